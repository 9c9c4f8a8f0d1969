// The file adapter: routes a data file's path to the slot that reads or writes that kind of file.
#pragma once

namespace host {

class Host;

class Adapter {
 public:
  explicit Adapter(Host& host) : host_(host) {}

  /// The slot's result; -1 for a path of no data file.
  int read(void* list, const char* path) const;
  int write(void* list, const char* path) const;

 private:
  Host& host_;
};

}  // namespace host
