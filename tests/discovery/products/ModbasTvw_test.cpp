#include "discovery/products/ModbasTvw.h"

#include <gtest/gtest.h>

#include "platform/ui/form.h"
#include "platform/ui/headless/headless_ui.h"

namespace quorvale {
namespace {

// A tree without a page around it.
class BareForm : public ui::Form {
 public:
  explicit BareForm(ui::Ui& binding) : Form(binding, "BareForm") {}
  ui::TreeView tree{*this, "tree"};
};

TEST(UpdateNodeChecks, TakesAlongNodesCreatedBetweenTwoChildren) {
  ui::HeadlessUi ui;
  BareForm form(ui);
  ui::TreeNode* first = form.tree.Add(nullptr, "first", "first", "");
  ui::TreeNode* second = form.tree.Add(nullptr, "second", "second", "");
  form.tree.Add(first, "a", "a", "");
  ui::TreeNode* between = form.tree.Add(second, "b", "b", "");
  form.tree.Add(first, "c", "c", "");
  first->SetChecked(true);
  UpdateNodeChecks(form.tree, first);
  EXPECT_TRUE(between->Checked());
}

TEST(UpdateNodeChecks, DoesNothingForNoNode) {
  ui::HeadlessUi ui;
  BareForm form(ui);
  ui::TreeNode* node = form.tree.Add(nullptr, "a", "a", "");
  node->SetChecked(true);
  UpdateNodeChecks(form.tree, nullptr);
  EXPECT_TRUE(node->Checked());
}

TEST(UpdateNodeChecks, ParentIsTickedWhileAnyChildIs) {
  ui::HeadlessUi ui;
  BareForm form(ui);
  ui::TreeNode* root = form.tree.Add(nullptr, "root", "root", "");
  ui::TreeNode* group = form.tree.Add(root, "group", "group", "");
  ui::TreeNode* one = form.tree.Add(group, "one", "one", "");
  ui::TreeNode* two = form.tree.Add(group, "two", "two", "");
  root->SetChecked(true);
  UpdateNodeChecks(form.tree, root);
  EXPECT_TRUE(one->Checked() && two->Checked());
  one->SetChecked(false);
  UpdateNodeChecks(form.tree, one);
  EXPECT_TRUE(group->Checked() && root->Checked());
  two->SetChecked(false);
  UpdateNodeChecks(form.tree, two);
  EXPECT_FALSE(group->Checked() || root->Checked());
}

}  // namespace
}  // namespace quorvale
