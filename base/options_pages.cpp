#include "base/options_pages.h"

GeneralOptionsPage* theGeneralOptionsPage = nullptr;
SecurityOptionsPage* theSecurityOptionsPage = nullptr;
ViewOptionsPage* theViewOptionsPage = nullptr;
ColorOptionsPage* theColorOptionsPage = nullptr;

GeneralOptionsPage::GeneralOptionsPage() noexcept {
  theGeneralOptionsPage = this;
}

GeneralOptionsPage::~GeneralOptionsPage() {
  theGeneralOptionsPage = nullptr;
}

SecurityOptionsPage::SecurityOptionsPage() noexcept {
  theSecurityOptionsPage = this;
}

SecurityOptionsPage::~SecurityOptionsPage() {
  theSecurityOptionsPage = nullptr;
}

ViewOptionsPage::ViewOptionsPage() noexcept {
  theViewOptionsPage = this;
}

ViewOptionsPage::~ViewOptionsPage() {
  theViewOptionsPage = nullptr;
}

ColorOptionsPage::ColorOptionsPage() noexcept {
  theColorOptionsPage = this;
}

ColorOptionsPage::~ColorOptionsPage() {
  theColorOptionsPage = nullptr;
}
