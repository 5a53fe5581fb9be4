#include "base/name_list.h"

#include <windows.h>

#include <utility>

const String& NameList::operator[](std::uint32_t index) const noexcept {
  static const String noName;
  const std::unique_ptr<String>& name = names_[index];
  return name ? *name : noName;
}

void NameList::append(String name) {
  names_.append(std::make_unique<String>(std::move(name)));
}

void NameList::set(std::uint32_t index, String name) {
  names_[index] = std::make_unique<String>(std::move(name));
}

void NameList::setSize(std::uint32_t size) {
  names_.setSize(size);
}

void NameList::clear() noexcept {
  names_.setSize(0);
}

bool NameList::holds(const String& name) const noexcept {
  for (std::uint32_t i = 0; i < size(); ++i) {
    if (CompareStringOrdinal((*this)[i].text(), -1, name.text(), -1, TRUE) == CSTR_EQUAL) return true;
  }
  return false;
}
