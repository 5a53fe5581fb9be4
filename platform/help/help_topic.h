#pragma once

#include <string>
#include <string_view>

namespace help {

/// What the user wants to read: a page of the manual's folder and a place on it.
struct Topic {
  std::wstring page;    ///< the name of a file, without a folder
  std::wstring anchor;  ///< empty for the beginning of the page
};

/// Where the manual begins.
inline constexpr wchar_t kManualPage[] = L"Quivane.htm";
inline constexpr wchar_t kFirstAnchor[] = L"Main_Contents";

/// The topic that a command line names as programs of the handheld do, "\Windows\file:Quivane.htm#Queries",
/// in quotes or behind a program's name or not. What is no plain name of a page ("..", a folder, a blank)
/// stands for the manual, and an anchor that is none for its beginning.
Topic topicOf(std::wstring_view commandLine);

}  // namespace help
