#include "platform/help/help_topic.h"

#include <algorithm>

namespace help {

namespace {

constexpr std::wstring_view kScheme = L"file:";
constexpr std::wstring_view kExtension = L".htm";

bool isNameSign(wchar_t sign) {
  return (sign >= L'a' && sign <= L'z') || (sign >= L'A' && sign <= L'Z') || (sign >= L'0' && sign <= L'9') ||
         sign == L'_' || sign == L'-';
}

bool isName(std::wstring_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isNameSign);
}

bool isPage(std::wstring_view text) {
  return text.ends_with(kExtension) && isName(text.substr(0, text.size() - kExtension.size()));
}

}  // namespace

Topic topicOf(std::wstring_view commandLine) {
  Topic topic{kManualPage, {}};
  const std::size_t scheme = commandLine.rfind(kScheme);
  if (scheme == std::wstring_view::npos) return topic;
  std::wstring_view asked = commandLine.substr(scheme + kScheme.size());
  const std::size_t last = asked.find_last_not_of(L"\" ");
  asked = asked.substr(0, last == std::wstring_view::npos ? 0 : last + 1);

  const std::size_t mark = asked.find(L'#');
  const std::wstring_view page = asked.substr(0, mark);
  if (!isPage(page)) return topic;
  topic.page = page;
  if (mark == std::wstring_view::npos) return topic;
  const std::wstring_view anchor = asked.substr(mark + 1);
  if (isName(anchor) && anchor != kFirstAnchor) topic.anchor = anchor;
  return topic;
}

}  // namespace help
