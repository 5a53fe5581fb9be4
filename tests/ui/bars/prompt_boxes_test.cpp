// How each kind of message and question looks.
#include "app/window/window_prompts.h"
#include "gtest/gtest.h"

namespace {

TEST(PromptBoxes, EachKindOfMessageHasItsLook) {
  EXPECT_EQ(boxFlags(Notice::refusal), UINT{MB_ICONEXCLAMATION});
  EXPECT_EQ(boxFlags(Notice::remark), UINT{MB_SETFOREGROUND});
  EXPECT_EQ(boxFlags(Notice::searchEnd), UINT{MB_ICONEXCLAMATION | MB_TOPMOST});
}

TEST(PromptBoxes, EachKindOfQuestionHasItsLook) {
  EXPECT_EQ(boxFlags(Question::dropObject), UINT{MB_YESNO | MB_SETFOREGROUND});
  EXPECT_EQ(boxFlags(Question::deleteRecord), UINT{MB_YESNO | MB_ICONQUESTION});
  EXPECT_EQ(boxFlags(Question::discard), UINT{MB_YESNO | MB_DEFBUTTON2 | MB_ICONEXCLAMATION});
}

}  // namespace
