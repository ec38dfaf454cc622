#include "platform/ui/controls.h"

#include "platform/ui/form.h"

namespace quorvale::ui {

OptionButton::OptionButton(Form& form, std::string name, std::string text, bool initial)
    : Control(form, std::move(name), ControlKind::kOptionButton),
      caption(*this, Property::kText, std::move(text)),
      value(*this, Property::kValue, initial) {
  value.on_change = [this] {
    if (!value) return;
    for (Control* other : this->form().controls()) {
      if (other == this || other->kind() != ControlKind::kOptionButton) continue;
      if (other->container == container) static_cast<OptionButton*>(other)->value = false;
    }
    if (on_click) on_click();
  };
}

void ListControl::AddItem(std::string text, int data) {
  items_.push_back({std::move(text), data});
  Notify(Property::kItems);
}

void ListControl::Clear() {
  items_.clear();
  list_index = -1;
  Notify(Property::kItems);
}

std::string ListControl::SelectedText() const {
  int index = list_index;
  return index >= 0 && index < Count() ? Item(index) : std::string();
}

bool ListControl::SelectText(const std::string& text) {
  for (int i = 0; i < Count(); ++i) {
    if (Item(i) != text) continue;
    list_index = i;
    return true;
  }
  return false;
}

ComboBox::ComboBox(Form& form, std::string name)
    : ListControl(form, std::move(name), ControlKind::kComboBox) {
  list_index.on_change = [this] {
    if (on_click) on_click();
  };
}

ListBox::ListBox(Form& form, std::string name)
    : ListControl(form, std::move(name), ControlKind::kListBox) {
  list_index.on_change = [this] {
    if (on_click) on_click();
  };
}

void ListView::AddRow(Row row) {
  rows_.push_back(std::move(row));
  Notify(Property::kItems);
}

void ListView::Clear() {
  rows_.clear();
  selected = -1;
  Notify(Property::kItems);
}

void Grid::AddRow(Row row) {
  rows_.push_back(std::move(row));
  Notify(Property::kItems);
}

void Grid::Clear() {
  rows_.clear();
  Notify(Property::kItems);
}

void Grid::SetColumnWidth(int column, int twips) {
  size_t place = static_cast<size_t>(column);
  if (column_widths.size() <= place) column_widths.resize(place + 1);
  column_widths[place] = twips;
  Notify(Property::kLook);
}

}  // namespace quorvale::ui
