// Text screens: a title, a text, soft keys.
#include "xmlbrowser/bodies.h"
#include "xmlbrowser/elements.h"

namespace cfgxml::xmlbrowser {
namespace {

using Target = ScreenTarget<XML_TEXT_SCREEN_T>;

void text(Target& target, const XMLElement& element) {
  if (const char* value = element.GetText()) copy_text(target.screen.Text, value);
}

constexpr ElementRule<Target> kElements[] = {
    {"Title", Tag::kNone, title<EmptyTitle::kPassedOver>},
    {"Text", Tag::kNone, text},
    {"SoftKey", Tag::kNone, soft_key},
};

}  // namespace

void read_body(const XMLElement& root, TagNames& names, XML_TEXT_SCREEN_T& screen) {
  Target target{screen, names};
  read_children(root, kElements, names, target);
}

}  // namespace cfgxml::xmlbrowser
