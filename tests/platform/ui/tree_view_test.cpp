#include "platform/ui/tree_view.h"

#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale::ui {
namespace {

class TreeViewTest : public testing::Test {
 protected:
  HeadlessUi ui_;
  Form form_{ui_, "frmTest"};
  TreeView tree_{form_, "tvwMain"};
};

TEST_F(TreeViewTest, FullPathJoinsTheCaptionsFromTheRoot) {
  TreeNode* root = tree_.Add(nullptr, "a", "Mail", "fc");
  TreeNode* group = tree_.Add(root, "b", "Other", "fc");
  TreeNode* leaf = tree_.Add(group, "c", "x.dbx", "mf");
  EXPECT_EQ(leaf->FullPath(), "Mail\\Other\\x.dbx");
  EXPECT_EQ(tree_.FindPath("Mail\\Other\\x.dbx"), leaf);
  EXPECT_EQ(tree_.FindPath("x.dbx"), nullptr);
  EXPECT_EQ(leaf->Root(), root);
}

TEST_F(TreeViewTest, ATakenKeyAddsNothing) {
  TreeNode* root = tree_.Add(nullptr, "a", "A", "fc");
  EXPECT_EQ(tree_.Add(root, "a", "again", "fc"), nullptr);
  EXPECT_EQ(tree_.Count(), 1);
  EXPECT_EQ(root->Children(), 0);
}

TEST_F(TreeViewTest, ARewrittenKeyIsFoundAndFreesTheOldOne) {
  TreeNode* a = tree_.Add(nullptr, "temporary", "A", "fc");
  tree_.Add(nullptr, "taken", "B", "fc");
  EXPECT_FALSE(a->SetKey("taken"));
  EXPECT_EQ(a->Key(), "temporary");
  EXPECT_TRUE(a->SetKey("C:\\a"));
  EXPECT_EQ(tree_.Find("C:\\a"), a);
  EXPECT_EQ(tree_.Find("temporary"), nullptr);
}

TEST_F(TreeViewTest, RemovalTakesTheBranchAndClosesTheIndexGap) {
  TreeNode* a = tree_.Add(nullptr, "a", "A", "fc");
  TreeNode* b = tree_.Add(nullptr, "b", "B", "fc");
  tree_.Add(a, "a1", "A1", "fc");
  TreeNode* b1 = tree_.Add(b, "b1", "B1", "fc");
  tree_.Select(a);
  tree_.Remove(a);
  EXPECT_EQ(tree_.Count(), 2);
  EXPECT_EQ(b->Index(), 1);
  EXPECT_EQ(b1->Index(), 2);
  EXPECT_EQ(tree_.Node(2), b1);
  EXPECT_EQ(tree_.Find("a1"), nullptr);
  EXPECT_EQ(tree_.Selected(), nullptr);
}

TEST_F(TreeViewTest, SiblingsFollowTheOrderOfCreation) {
  TreeNode* root = tree_.Add(nullptr, "r", "R", "fc");
  TreeNode* first = tree_.Add(root, "1", "1", "fc");
  TreeNode* second = tree_.Add(root, "2", "2", "fc");
  TreeNode* third = tree_.Add(root, "3", "3", "fc");
  EXPECT_EQ(root->Child(), first);
  EXPECT_EQ(first->Next(), second);
  tree_.Remove(second);
  EXPECT_EQ(first->Next(), third);
  EXPECT_EQ(third->Next(), nullptr);
}

TEST_F(TreeViewTest, ATickByTheUserReachesTheHandlerAndOneByTheProgramDoesNot) {
  TreeNode* node = tree_.Add(nullptr, "a", "A", "fc");
  int calls = 0;
  tree_.on_node_check = [&](TreeNode* ticked) {
    EXPECT_EQ(ticked, node);
    EXPECT_TRUE(ticked->Checked());
    ++calls;
  };
  node->SetChecked(true);
  EXPECT_EQ(calls, 0);
  tree_.UserChecks(node, true);
  EXPECT_EQ(calls, 1);
  tree_.enabled = false;
  tree_.UserChecks(node, false);
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(node->Checked());
}

}  // namespace
}  // namespace quorvale::ui
