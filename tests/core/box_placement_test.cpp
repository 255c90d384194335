#include "core/box_placement.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

using namespace zorvik;

TEST(InfoBoxCascade, StandsCentredUntilABoxStandsWithItsLeftAtTheCentredTop) {
  EXPECT_EQ(cascadeInfoBox({500, 300}, {}), (BoxPosition{500, 300}));
  // A box at the same centred place does not move the next one: the first test is made with the top.
  EXPECT_EQ(cascadeInfoBox({500, 300}, {500, 500}), (BoxPosition{500, 300}));
  // One step of a fifth of the left, down as far as right.
  EXPECT_EQ(cascadeInfoBox({500, 300}, {300}), (BoxPosition{600, 400}));
  // Each further step tests the left the box had before it; the order of the open boxes does not matter.
  EXPECT_EQ(cascadeInfoBox({500, 300}, {600, 500, 300}), (BoxPosition{800, 600}));
  EXPECT_EQ(cascadeInfoBox({500, 300}, {300, 600}), (BoxPosition{600, 400}));
}

TEST(InfoBoxCascade, BoxesCentredOnTheDiagonalStepTwiceAtOnce) {
  // With the left equal to the top the first two tests both meet the first box.
  EXPECT_EQ(cascadeInfoBox({500, 500}, {500}), (BoxPosition{700, 700}));
  EXPECT_EQ(cascadeInfoBox({500, 500}, {500, 700}), (BoxPosition{700, 700}));
  EXPECT_EQ(cascadeInfoBox({500, 500}, {500, 700, 600}), (BoxPosition{900, 900}));
}

TEST(InfoBoxCascade, LooksAtTheFirst1001OtherBoxesOnly) {
  std::vector<int> lefts(1000, 1);
  lefts.push_back(300);  // the 1001st
  EXPECT_EQ(cascadeInfoBox({500, 300}, lefts), (BoxPosition{600, 400}));
  lefts.insert(lefts.begin(), 2);  // now the 1002nd
  EXPECT_EQ(cascadeInfoBox({500, 300}, lefts), (BoxPosition{500, 300}));
}

TEST(InfoBoxCascade, EndsAtTheScreenEdgeAndNeverOverflows) {
  // A left of zero makes a step of zero: the test would meet the same box for ever.
  EXPECT_EQ(cascadeInfoBox({0, 0}, {0}), (BoxPosition{0, 0}));
  EXPECT_EQ(cascadeInfoBox({2, 0}, {0, 2}), (BoxPosition{2, 0}));  // a fifth of 2 rounds to 0
  EXPECT_EQ(cascadeInfoBox({-10, -10}, {-10, -12}), (BoxPosition{-16, -16}));
  EXPECT_EQ(cascadeInfoBox({INT_MAX, INT_MAX}, {INT_MAX}), (BoxPosition{INT_MAX, INT_MAX}));
  EXPECT_EQ(cascadeInfoBox({INT_MIN, 0}, {0, INT_MIN}).left, INT_MIN);
}

TEST(QuestionBoxPlace, OneOwnHeightLowerWhileAnInformationBoxIsOpen) {
  EXPECT_EQ(placeQuestionBox({100, 200}, 150, false), (BoxPosition{100, 200}));
  EXPECT_EQ(placeQuestionBox({100, 200}, 150, true), (BoxPosition{100, 350}));
  EXPECT_EQ(placeQuestionBox({100, INT_MAX - 1}, 150, true).top, INT_MAX);
}
