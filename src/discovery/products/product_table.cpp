#include "discovery/products/product_table.h"

#include "core/program/ModGlobal.h"
#include "discovery/products/product_fills.h"
#include "platform/ui/tree_view.h"

namespace quorvale {
namespace {

constexpr Product Row(ProductId id, const char* caption, const char* picture,
                      const char* settings_element) {
  return {id,      caption, picture, caption, picture, settings_element,
          nullptr, nullptr, nullptr, nullptr, nullptr};
}

constexpr Product OutlookExpress() {
  Product product = Row(ProductId::kOutlookExpress, "Outlook Express", "oea", "OE");
  product.watched_image = "msimn.exe";
  product.backup_request = "Please close Outlook Express to continue.";
  product.restore_request = "Please close Outlook Express to continue";
  product.is_offered = [](Program& program) { return !IsVista(program); };
  product.fill = FillOutlookExpressNodes;
  return product;
}

constexpr Product MicrosoftOutlook() {
  Product product = Row(ProductId::kMicrosoftOutlook, "Microsoft Outlook", "moa", "MO");
  product.watched_image = "OUTLOOK.exe";
  product.backup_request = "Please close Microsoft Outlook to continue.";
  product.restore_request = "Please close Microsoft Outlook to continue";
  product.is_offered = HasMicrosoftOutlook;
  product.fill = FillMicrosoftOutlookNodes;
  return product;
}

constexpr Product InternetExplorer() {
  Product product = Row(ProductId::kInternetExplorer, "Internet Explorer", "iea", "IE");
  product.fill = FillInternetExplorerNodes;
  return product;
}

constexpr Product WindowsMail() {
  Product product = Row(ProductId::kWindowsMail, "Windows Mail", "WM", "WM");
  product.watched_image = "WinMail.exe";
  product.backup_request = "Please close Windows Mail to continue.";
  product.restore_request = "Please close Windows Mail to continue.";
  product.is_offered = [](Program& program) { return IsVista(program); };
  product.fill = FillWindowsMailNodes;
  return product;
}

constexpr Product OtherFiles() {
  Product product = Row(ProductId::kOtherFiles, "Other Files", "af", "OF");
  product.fill = FillOtherFilesNodes;
  return product;
}

constexpr Product AddedFolders() {
  Product product = Row(ProductId::kAddedFolders, "Add Other Folders", "aa1", "AOF");
  product.restore_caption = "Added Other Folders";
  return product;
}

constexpr Product AddedFiles() {
  Product product = Row(ProductId::kAddedFiles, "Add More Files", "ab1", "AMF");
  product.restore_caption = "Added More Files";
  product.restore_picture = "aa1";
  return product;
}

constexpr std::array<Product, 7> kProducts = {
    OutlookExpress(), MicrosoftOutlook(), InternetExplorer(), WindowsMail(),
    OtherFiles(),     AddedFolders(),     AddedFiles()};

}  // namespace

std::span<const Product> Products() { return kProducts; }

const Product& ProductOf(ProductId id) { return kProducts[static_cast<size_t>(id)]; }

std::string PathPrefix(ProductId id) { return std::string(ProductOf(id).caption) + "\\"; }

const Product* ProductOfItem(std::string_view path) {
  const std::string_view root = path.substr(0, path.find('\\'));
  if (root.size() == path.size()) return nullptr;
  for (const Product& product : kProducts) {
    if (root == product.caption) return &product;
  }
  return nullptr;
}

ui::TreeNode* AddProductRoot(ui::TreeView& tree, ProductId id) {
  const Product& product = ProductOf(id);
  return tree.Add(nullptr, product.caption, product.caption, product.picture);
}

void FillProducts(Program& program, ui::TreeView& tree) {
  for (const ProductId id : kWorkOrder) {
    const Product& product = ProductOf(id);
    if (product.is_offered == nullptr || product.is_offered(program)) product.fill(program, tree);
  }
}

}  // namespace quorvale
