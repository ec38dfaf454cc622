// A tree with check boxes. Its nodes are data: the pages keep what they found and what is ticked
// in them.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/ui/control.h"

namespace quorvale::ui {

class TreeView;

class TreeNode {
 public:
  const std::string& Key() const { return key_; }
  const std::string& Text() const { return text_; }
  // The captions from the root to this node, joined with "\".
  std::string FullPath() const;
  // 1-based order of creation; a removal closes the gap.
  int Index() const { return index_; }
  TreeNode* Parent() const { return parent_; }
  // First child, next sibling; null at the end.
  TreeNode* Child() const { return children_.empty() ? nullptr : children_.front(); }
  TreeNode* Next() const;
  int Children() const { return static_cast<int>(children_.size()); }
  const std::vector<TreeNode*>& ChildNodes() const { return children_; }
  const TreeNode* Root() const;

  bool Checked() const { return checked_; }
  void SetChecked(bool checked);  // raises no event
  // False, with nothing changed, if another node has that key.
  bool SetKey(const std::string& key);
  void SetText(const std::string& text);
  void SetExpanded(bool expanded);
  bool Expanded() const { return expanded_; }

  std::string image;
  std::string selected_image;
  std::string tag;

 private:
  friend class TreeView;
  TreeView* tree_ = nullptr;
  TreeNode* parent_ = nullptr;
  std::vector<TreeNode*> children_;
  std::string key_, text_;
  size_t place_ = 0;  // among its siblings
  int index_ = 0;
  bool checked_ = false;
  bool expanded_ = false;
};

class TreeView : public Control {
 public:
  TreeView(Form& form, std::string name);
  ~TreeView() override;

  // Adds a node as the last child of `parent` (null: as a root). Null, with nothing changed, if
  // the key is taken. Keys are compared as they stand; an empty key is never found again.
  TreeNode* Add(TreeNode* parent, const std::string& key, const std::string& text,
                const std::string& image, const std::string& selected_image = "");
  // Removes a node with all below it.
  void Remove(TreeNode* node);
  void Clear();

  int Count() const { return static_cast<int>(nodes_.size()); }
  // By 1-based index.
  TreeNode* Node(int index) const { return nodes_.at(static_cast<size_t>(index - 1)).get(); }
  TreeNode* Find(const std::string& key) const;
  TreeNode* FindPath(const std::string& full_path) const;

  TreeNode* Selected() const { return selected_; }
  void Select(TreeNode* node);
  void EnsureVisible(TreeNode* node);

  // The user ticked or unticked a node's box: the box has its new state when this runs.
  std::function<void(TreeNode*)> on_node_check;
  // The user clicked or selected a node.
  std::function<void(TreeNode*)> on_node_click;
  std::function<void(TreeNode*)> on_expand;
  std::function<void(TreeNode*)> on_collapse;

  // What a view calls when the user acts.
  void UserChecks(TreeNode* node, bool checked);
  void UserClicks(TreeNode* node);

  // Between these two the view is not told of single changes but once at the end.
  void BeginUpdate() { ++updating_; }
  void EndUpdate();

 private:
  friend class TreeNode;
  void Reindex(size_t from);
  void Forget(TreeNode* node);
  void Changed();

  std::vector<std::unique_ptr<TreeNode>> nodes_;  // by index
  std::vector<TreeNode*> roots_;
  std::unordered_map<std::string, TreeNode*> by_key_;
  TreeNode* selected_ = nullptr;
  int updating_ = 0;
};

}  // namespace quorvale::ui
