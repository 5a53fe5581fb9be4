#include "base/name_list.h"

#include <utility>

#include "base/name_search.h"

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

std::uint32_t NameList::find(const String& name) const noexcept {
  return findName(name, size(), [this](std::uint32_t index) -> const String& { return (*this)[index]; });
}
