#pragma once

#include "records/document.h"

/// What holds during a step, however it ends.
class Document::SearchStep {
 public:
  explicit SearchStep(Document& document) : document_(document) {
    document_.isSearching_ = true;
    document_.searchBegan_ = BusyClock::now();
  }
  ~SearchStep() {
    document_.database_.endSearch();
    document_.pages_.prompts.endProgress();
    document_.isSearching_ = false;
    document_.searched_.reset();
  }
  SearchStep(const SearchStep&) = delete;
  SearchStep& operator=(const SearchStep&) = delete;

 private:
  Document& document_;
};
