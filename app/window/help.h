#pragma once

/// Pages of the help, as the viewer names them.
inline constexpr wchar_t kMainHelpTopic[] = L"\\Windows\\file:Quivane.htm#Main_Contents";

/// Starts the help viewer, peghelp.exe of the program's folder, with a topic and does not wait for it.
/// Nothing happens when it is not there.
void showHelp(const wchar_t* topic);
