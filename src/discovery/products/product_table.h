// What each product keeps where: the room's purpose, and the place to start reading.
//
// A product is a program whose data is saved and brought back, or one of the three roots for the
// user's own files. Its row in the table below names it for every room above; its fill
// (product_fills.h, one *_source.cpp a product) puts what this computer holds of it into an item
// tree; its places (outlook_places.h, outlook_express_places.h) say where a backup finds and a
// restore puts back the same things; watched_programs.h says what must not run meanwhile. The room
// asks the ground (core/program), the platform and the tree model, and knows no page and no box.
//
// A new product is a new row here, a fill, and its entry names (backup/format/archive_layout).
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace quorvale {

class Program;
namespace ui {
class TreeNode;
class TreeView;
}  // namespace ui

// In the order of the table.
enum class ProductId {
  kOutlookExpress,
  kMicrosoftOutlook,
  kInternetExplorer,
  kWindowsMail,
  kOtherFiles,    // the documents folder and the desktop
  kAddedFolders,  // what the user adds to the tree
  kAddedFiles,
};

struct Product {
  ProductId id;
  // Of its root in the backup tree: caption, key, and the first part of its items' paths.
  const char* caption;
  const char* picture;
  // Of its root in the restore tree. Added files and folders stand under this caption in the
  // archive too.
  const char* restore_caption;
  const char* restore_picture;
  const char* settings_element;  // of its items in the settings file

  // The program that must not run while its data is touched: image name, compared without regard
  // to case, and what the pages of the backup and of the restore ask for. All null without one.
  const char* watched_image;
  const char* backup_request;
  const char* restore_request;

  // True if a tree of this computer has the root. Null: always.
  bool (*is_offered)(Program& program);
  // Adds the root with all below it. Null for the added folders and files, whose empty roots come
  // with those of the other files.
  void (*fill)(Program& program, ui::TreeView& tree);
};

// All products, in the order in which the restore tree shows them and running programs are looked
// for.
std::span<const Product> Products();
const Product& ProductOf(ProductId id);

// What the paths of a product's items start with: "Outlook Express\".
std::string PathPrefix(ProductId id);
// The product whose item has this path in the backup tree; null if none has. A root itself is no
// item.
const Product* ProductOfItem(std::string_view path);

// The order in which the roots are put into the backup tree and in which a backup takes them. The
// roots for added folders and files belong to the other files there.
inline constexpr std::array<ProductId, 5> kWorkOrder = {
    ProductId::kWindowsMail, ProductId::kOutlookExpress, ProductId::kMicrosoftOutlook,
    ProductId::kInternetExplorer, ProductId::kOtherFiles};

// Adds the root of a product to the backup tree. Null if the tree has its key already.
ui::TreeNode* AddProductRoot(ui::TreeView& tree, ProductId id);
// Fills the backup tree with what this computer holds of every product that it offers.
void FillProducts(Program& program, ui::TreeView& tree);

}  // namespace quorvale
