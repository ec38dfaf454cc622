#include "platform/ui/tree_view.h"

#include <algorithm>

namespace quorvale::ui {

std::string TreeNode::FullPath() const {
  if (parent_ == nullptr) return text_;
  return parent_->FullPath() + "\\" + text_;
}

TreeNode* TreeNode::Next() const {
  const auto& siblings = parent_ != nullptr ? parent_->children_ : tree_->roots_;
  return place_ + 1 < siblings.size() ? siblings[place_ + 1] : nullptr;
}

const TreeNode* TreeNode::Root() const {
  const TreeNode* node = this;
  while (node->parent_ != nullptr) node = node->parent_;
  return node;
}

void TreeNode::SetChecked(bool checked) {
  if (checked_ == checked) return;
  checked_ = checked;
  tree_->Changed();
}

bool TreeNode::SetKey(const std::string& key) {
  if (key == key_) return true;
  if (!key.empty() && !tree_->by_key_.emplace(key, this).second) return false;
  if (!key_.empty()) tree_->by_key_.erase(key_);
  key_ = key;
  return true;
}

void TreeNode::SetText(const std::string& text) {
  text_ = text;
  tree_->Changed();
}

void TreeNode::SetExpanded(bool expanded) {
  if (expanded_ == expanded) return;
  expanded_ = expanded;
  tree_->Changed();
}

TreeView::TreeView(Form& form, std::string name)
    : Control(form, std::move(name), ControlKind::kTreeView) {}

TreeView::~TreeView() = default;

TreeNode* TreeView::Add(TreeNode* parent, const std::string& key, const std::string& text,
                        const std::string& image, const std::string& selected_image) {
  if (!key.empty() && by_key_.contains(key)) return nullptr;
  nodes_.push_back(std::make_unique<TreeNode>());
  TreeNode* node = nodes_.back().get();
  node->tree_ = this;
  node->parent_ = parent;
  node->key_ = key;
  node->text_ = text;
  node->image = image;
  node->selected_image = selected_image;
  node->index_ = Count();
  auto& siblings = parent != nullptr ? parent->children_ : roots_;
  node->place_ = siblings.size();
  siblings.push_back(node);
  if (!key.empty()) by_key_.emplace(key, node);
  Changed();
  return node;
}

void TreeView::Forget(TreeNode* node) {
  for (TreeNode* child : node->children_) Forget(child);
  if (!node->key_.empty()) by_key_.erase(node->key_);
  if (selected_ == node) selected_ = nullptr;
  node->tree_ = nullptr;  // marks it for removal
}

void TreeView::Remove(TreeNode* node) {
  auto& siblings = node->parent_ != nullptr ? node->parent_->children_ : roots_;
  size_t place = node->place_;
  siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(place));
  for (size_t i = place; i < siblings.size(); ++i) siblings[i]->place_ = i;
  Forget(node);
  std::erase_if(nodes_,
                [](const std::unique_ptr<TreeNode>& each) { return each->tree_ == nullptr; });
  Reindex(0);
  Changed();
}

void TreeView::Reindex(size_t from) {
  for (size_t i = from; i < nodes_.size(); ++i) nodes_[i]->index_ = static_cast<int>(i) + 1;
}

void TreeView::Clear() {
  selected_ = nullptr;
  by_key_.clear();
  roots_.clear();
  nodes_.clear();
  Changed();
}

TreeNode* TreeView::Find(const std::string& key) const {
  auto found = by_key_.find(key);
  return found == by_key_.end() ? nullptr : found->second;
}

TreeNode* TreeView::FindPath(const std::string& full_path) const {
  for (const auto& node : nodes_) {
    // The last component first: building every full path would cost far more.
    const std::string& text = node->text_;
    if (full_path.size() < text.size() ||
        full_path.compare(full_path.size() - text.size(), text.size(), text) != 0) {
      continue;
    }
    if (node->FullPath() == full_path) return node.get();
  }
  return nullptr;
}

void TreeView::Select(TreeNode* node) {
  if (selected_ == node) return;
  selected_ = node;
  Notify(Property::kSelection);
}

void TreeView::EnsureVisible(TreeNode* node) {
  for (TreeNode* parent = node->parent_; parent != nullptr; parent = parent->parent_) {
    parent->SetExpanded(true);
  }
}

void TreeView::UserChecks(TreeNode* node, bool checked) {
  if (!enabled) return;
  node->SetChecked(checked);
  if (on_node_check) on_node_check(node);
}

void TreeView::UserClicks(TreeNode* node) {
  if (!enabled) return;
  Select(node);
  if (on_node_click) on_node_click(node);
}

void TreeView::EndUpdate() {
  if (--updating_ == 0) Notify(Property::kItems);
}

void TreeView::Changed() {
  if (updating_ == 0) Notify(Property::kItems);
}

}  // namespace quorvale::ui
