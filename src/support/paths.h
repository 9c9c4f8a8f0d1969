// Every fixed path of the library, and the folder below which it opens them.
#pragma once

#include <string>
#include <string_view>

namespace cfgxml::paths {

inline constexpr char kContacts[] = "/config/Phone/Contact/Contact.xml";
inline constexpr char kBlacklist[] = "/config/Phone/Contact/Blacklist.xml";
inline constexpr char kHistory[] = "/config/Phone/History/History.xml";
inline constexpr char kDialNow[] = "/config/Phone/General/DialRule/DialNow.xml";
inline constexpr char kDialReplace[] = "/config/Phone/General/DialRule/DialReplace.xml";
inline constexpr char kBlockOut[] = "/config/Phone/General/DialRule/BlockOut.xml";
inline constexpr char kMessages[] = "/config/Phone/Message/Message.xml";
inline constexpr char kTimezones[] = "/config/System/TimeZone.xml";
inline constexpr char kNotifications[] = "/config/Network/Rcpe/RcpeNotify.xml";
/// Followed by the book's digit.
inline constexpr char kRemoteBook[] = "/tmp/remote_contact.xml";
/// The folder of the factory documents.
inline constexpr char kFactoryDocuments[] = "/app/factory/Static/XMLBrowser/";

/// Sets the storage root; not safe beside other calls.
void set_root(const char* directory);

/// True for the files that the library writes itself.
bool is_data_file(std::string_view path);

/// Where a file really is: below the storage root when the path is one of the library's own, else
/// the path itself.
std::string on_disk(const char* path);

}  // namespace cfgxml::paths
