#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "expr/ieval_list.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

constexpr const char* kNameMessage =
    "Illegal I-Eval name. Make sure it starts with [a-z,A-Z,_] and followed by alpha-numeric or "
    "any of ' :;,-+*/=~_&|#!?(){}[]' chars. The name can't exceed length of 180";

CIEvalList ListOf(std::initializer_list<std::pair<const char*, const char*>> items) {
  CIEvalList list;
  std::string message;
  for (const auto& [name, expression] : items) {
    EXPECT_TRUE(list.Add(name, expression, false, nullptr, message)) << name << ": " << message;
  }
  return list;
}

TEST(IEvalListTest, NameRule) {
  struct Case {
    std::string name;
    bool ok;
  };
  const Case cases[] = {
      {"my name", true},          {"_x1", true},
      {"a:;,-+*/=~_&|#!?(){}[]", true},
      {std::string(180, 'a'), true},
      {std::string(181, 'a'), false},
      {"1abc", false},            {"", false},
      {" lead", false},           {"a$b", false},
      {"a.b", false},             {"a<b", false},
  };
  for (const Case& c : cases) {
    std::string message;
    EXPECT_EQ(CIEvalList::CheckName(c.name, message), c.ok) << c.name;
    EXPECT_EQ(message, c.ok ? "" : kNameMessage) << c.name;
  }
}

TEST(IEvalListTest, AddAsksBeforeOverwritingAndKeepsThePlace) {
  CIEvalList list = ListOf({{"b", "i+1"}, {"a", "i*2"}});
  std::vector<std::string> questions;
  bool answer = false;
  const auto ask = [&](std::string_view q) {
    questions.emplace_back(q);
    return answer;
  };
  std::string message;
  EXPECT_FALSE(list.Add("b", "i+5", false, ask, message));
  EXPECT_EQ(*list.Find("b"), "i+1");
  answer = true;
  EXPECT_TRUE(list.Add("b", "i+5", false, ask, message));
  EXPECT_EQ(*list.Find("b"), "i+5");
  EXPECT_TRUE(list.Add("a", "i*3", true, ask, message));  // no question asked
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_EQ(questions[0], "The name you're trying to add already exists.\nOverwrite it?");
  EXPECT_EQ(list.CustomOrder(), (std::vector<std::string>{"b", "a"}));
  EXPECT_FALSE(list.Add("9", "i", false, ask, message));
  EXPECT_EQ(message, kNameMessage);
}

TEST(IEvalListTest, MovesAndViews) {
  CIEvalList list = ListOf({{"c", "1"}, {"a", "2"}, {"b", "3"}});
  EXPECT_STREQ(list.ToggleText(), "Sorted list ->");
  EXPECT_TRUE(list.MoveUp("b"));
  EXPECT_FALSE(list.MoveUp("c"));
  EXPECT_FALSE(list.MoveDown("a"));
  EXPECT_FALSE(list.MoveUp("zz"));
  EXPECT_EQ(list.Names(), (std::vector<std::string>{"c", "b", "a"}));
  list.ToggleView();
  EXPECT_STREQ(list.ToggleText(), "Custom list ->");
  EXPECT_EQ(list.Names(), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_FALSE(list.MoveDown("a"));  // moving belongs to the custom view
  EXPECT_TRUE(list.Delete("b"));
  EXPECT_FALSE(list.Delete("b"));
  EXPECT_EQ(list.CustomOrder(), (std::vector<std::string>{"c", "a"}));
  EXPECT_EQ(CIEvalList::MarkerText("c"), "{$c$}");
  EXPECT_EQ(list.ExpressionText("a"), "{2}");
}

TEST(IEvalListTest, StoreAndLoadKeepTheCustomOrderEvenInTheSortedView) {
  test::TempDir dir;
  CIEvalList list = ListOf({{"zeta", "{i+1}\n{i*2}"}, {"alpha", "i[x-1,y]"}, {"my name", "c;c;c"}});
  list.ToggleView();
  std::string message;
  ASSERT_TRUE(list.Store(dir.File("qel.ieval.txt"), message)) << message;
  EXPECT_EQ(test::ReadWholeFile(dir / "qel.ieval.txt"),
            "<zeta>\n{i+1}\n{i*2}\n</zeta>\n<alpha>\ni[x-1,y]\n</alpha>\n<my name>\nc;c;c\n</my name>\n");
  CIEvalList loaded;
  std::vector<std::string> messages;
  ASSERT_TRUE(loaded.Load(dir.File("qel.ieval.txt"), messages));
  EXPECT_TRUE(messages.empty());
  EXPECT_EQ(loaded.CustomOrder(), (std::vector<std::string>{"zeta", "alpha", "my name"}));
  EXPECT_EQ(*loaded.Find("zeta"), "{i+1}\n{i*2}");
}

TEST(IEvalListTest, LoadSkipsIllegalNamesWithTheirLineAndTrimsLineEnds) {
  test::TempDir dir;
  dir.Write("list.txt",
            "<good>  \r\ni + 1\t\r\n</good>\r\n"
            "<9bad>\nx\n</9bad>\n"
            "stray text\n"
            "<last>\ny\n");
  CIEvalList list;
  std::vector<std::string> messages;
  ASSERT_TRUE(list.Load(dir.File("list.txt"), messages));
  EXPECT_EQ(messages, (std::vector<std::string>{"Failed to load item at line #4: illegal name '9bad'"}));
  EXPECT_EQ(list.CustomOrder(), (std::vector<std::string>{"good", "last"}));
  EXPECT_EQ(*list.Find("good"), "i + 1");
  EXPECT_EQ(*list.Find("last"), "y");
}

TEST(IEvalListTest, LoadAndStoreFailures) {
  test::TempDir dir;
  CIEvalList list;
  std::vector<std::string> messages;
  EXPECT_TRUE(list.Load(dir.File("absent.txt"), messages));  // no file yet: an empty list
  EXPECT_TRUE(messages.empty());
  const std::string no_folder = dir.File("nowhere/qel.ieval.txt");
  EXPECT_FALSE(list.Load(no_folder, messages));
  EXPECT_EQ(messages, (std::vector<std::string>{"Failed: Path not found '" + no_folder + "'"}));
  std::string message;
  EXPECT_FALSE(list.Store(no_folder, message));
  EXPECT_EQ(message, "Failed: Can't write to '" + no_folder + "'");
}

TEST(IEvalListTest, ExpandNameMarkers) {
  const CIEvalList list = ListOf({{"A", "{$A$}"},
                                  {"Self", "$Self$"},
                                  {"Blur", "(i[x-1,y]+i[x+1,y])/2"},
                                  {"Twice", "$Blur$*2"},
                                  {"my name", "7"}});
  struct Case {
    const char* text;
    bool ok;
    const char* result;
  };
  const Case cases[] = {
      {"{i+1}", true, "{i+1}"},
      {"{$Twice$ + $my name$}", true, "{(i[x-1,y]+i[x+1,y])/2*2 + 7}"},
      {"{$A$}", false, "I-Eval (expanded) length is too long (max is 3000)"},
      {"$Self$", false, "I-Eval (expanded) length is too long (max is 3000)"},
      {"{i} {$Erode3x3", false, "Found name marker start $ w/o a matching end in pos 5"},
      {"{i+$Nope$}", false, "Unknown name marker 'Nope' in pos 3"},
  };
  for (const Case& c : cases) {
    std::string out;
    std::string message;
    EXPECT_EQ(list.ExpandNameMarkers(c.text, out, message), c.ok) << c.text;
    EXPECT_EQ(c.ok ? out : message, c.result) << c.text;
  }
}

}  // namespace
}  // namespace korvanel
