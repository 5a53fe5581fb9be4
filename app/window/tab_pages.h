#pragma once

/// The tab control with its four pages, and switching between them.

/// Creates the tab control in the main window. Leaves tabControl null when that fails.
void createTabControl();

/// Fills the tabs in, with the labels that the option asks for.
void buildTabPages();

/// The images of the tabs are no longer needed.
void destroyTabImages();

/// Marks a tab as the chosen one; the page is not switched.
void selectTab(int page);

/// The tab that is chosen, -1 for none.
int selectedTab();

/// The control reports that the user has chosen another tab: its page is shown.
void tabChosen();

/// Shows another page: its bars, the menu bar that belongs to it, currentPage, and with it the
/// Document's mode. Nothing happens for the page that is shown already. -1 only takes the bars away.
void switchPage(int page);

/// Switches to a page and marks its tab.
void showPage(int page);

/// Enters a page and marks its tab, also when the page is shown already: that was the former database's.
void showPageAnew(int page);

/// The same for the Tables page, with which a database that was just opened begins.
void showDatabasePage();

/// The bars of a database that was closed go, and the page stays, because none came in its place.
void showNoDatabase();
