#include "views/form/form_layout.h"

#include "gtest/gtest.h"

namespace {

TEST(FormLayout, AScreenOf240Holds9FieldsAndWithAPanelOf80Holds6) {
  EXPECT_EQ(formMetrics(240, 0, 5).fieldsPerPage, 9u);
  EXPECT_EQ(formMetrics(240, 80, 5).fieldsPerPage, 6u);
}

TEST(FormLayout, ThreeSizesOfScreens) {
  const struct {
    int width;
    int panelHeight;
    ScreenSize screen;
    std::uint32_t fieldsPerPage;
  } rows[] = {
      {200, 0, ScreenSize::small, 9},    {240, 0, ScreenSize::small, 9},   {240, 17, ScreenSize::small, 9},
      {240, 18, ScreenSize::small, 8},   {240, 80, ScreenSize::small, 6},  {241, 0, ScreenSize::medium, 10},
      {320, 80, ScreenSize::medium, 10}, {480, 0, ScreenSize::medium, 10}, {481, 0, ScreenSize::large, 11},
      {640, 80, ScreenSize::large, 11},
  };
  for (const auto& row : rows) {
    const FormMetrics metrics = formMetrics(row.width, row.panelHeight, 5);
    EXPECT_EQ(metrics.screen, row.screen) << row.width;
    EXPECT_EQ(metrics.fieldsPerPage, row.fieldsPerPage) << row.width << " " << row.panelHeight;
  }
}

TEST(FormLayout, AFormThatStandsIsLaidOutByTheSmallScreensRule) {
  EXPECT_EQ(fieldsAbovePanel(269, 0), 9u);
  EXPECT_EQ(fieldsAbovePanel(269, 80), 6u);
  EXPECT_EQ(fieldsAbovePanel(269, 269 - 27), 1u) << "an empty page could not be turned";
  EXPECT_EQ(fieldsAbovePanel(269, 400), 1u);
}

TEST(FormLayout, ANameOf16And17CharactersGives119AndOneOf3Gives28) {
  EXPECT_EQ(formMetrics(240, 0, 16).labelWidth, 119);
  EXPECT_EQ(formMetrics(240, 0, 17).labelWidth, 119);
  EXPECT_EQ(formMetrics(240, 0, 255).labelWidth, 119);
  EXPECT_EQ(formMetrics(240, 0, 15).labelWidth, 112);
  EXPECT_EQ(formMetrics(240, 0, 3).labelWidth, 28);
  EXPECT_EQ(formMetrics(240, 0, 0).labelWidth, 7);
}

TEST(FormLayout, EditorsTakeWhatTheLabelsLeave) {
  const struct {
    int screenWidth;
    std::uint32_t longestName;
    int editorWidth;
  } rows[] = {
      {240, 3, 195}, {240, 16, 104}, {320, 3, 100}, {320, 16, 9},
      {640, 3, 260}, {640, 16, 169}, {801, 3, 340},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(formMetrics(row.screenWidth, 0, row.longestName).editorWidth, row.editorWidth)
        << row.screenWidth << " " << row.longestName;
  }
}

TEST(FormLayout, TenFieldsOnAMediumScreenGiveOnePageAndElevenGiveTwo) {
  const std::uint32_t perPage = formMetrics(320, 0, 5).fieldsPerPage;
  EXPECT_EQ(formPageCount(10, perPage), 1u);
  ASSERT_EQ(formPageCount(11, perPage), 2u);
  EXPECT_EQ(formPageRange(1, perPage, 11), (FieldRange{10, 11}));
  EXPECT_EQ(formRowTop(10 % perPage, 30), 30);
  EXPECT_EQ(formRowTop(10 % perPage, 2), 2);
}

TEST(FormLayout, PagesHoldTheFieldsInOrder) {
  EXPECT_EQ(formPageCount(0, 9), 0u);
  EXPECT_EQ(formPageCount(1, 9), 1u);
  EXPECT_EQ(formPageCount(9, 9), 1u);
  EXPECT_EQ(formPageCount(18, 9), 2u);
  EXPECT_EQ(formPageCount(19, 9), 3u);
  EXPECT_EQ(formPageRange(0, 9, 0), (FieldRange{0, 0}));
  EXPECT_EQ(formPageRange(0, 9, 20), (FieldRange{0, 9}));
  EXPECT_EQ(formPageRange(2, 9, 20), (FieldRange{18, 20}));
}

TEST(FormLayout, RowsAre23Apart) {
  EXPECT_EQ(formRowTop(0, 30), 30);
  EXPECT_EQ(formRowTop(1, 30), 53);
  EXPECT_EQ(formRowTop(8, 2), 186);
}

TEST(FormLayout, ControlsHaveTheirPlacesInARow) {
  const FormMetrics metrics = formMetrics(240, 0, 3);
  EXPECT_EQ(labelPlace(53, metrics), (ControlPlace{3, 53, 28, 18}));
  EXPECT_EQ(textEditorPlace(53, metrics), (ControlPlace{41, 53, 195, 18}));
  EXPECT_EQ(checkBoxPlace(53), (ControlPlace{3, 53, 170, 18}));
}

TEST(FormLayout, ADateIsNeverWiderThan80) {
  EXPECT_EQ(dateEditorPlace(30, formMetrics(240, 0, 3)), (ControlPlace{41, 30, 80, 18}));
  EXPECT_EQ(dateEditorPlace(30, formMetrics(320, 0, 16)), (ControlPlace{132, 30, 9, 18}));
}

}  // namespace
