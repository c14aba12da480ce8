#include "dqlib/framework/base/string_collections.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "dqlib/framework/base/archive.h"

namespace dq {

CStringList::Node* CStringList::ToNode(POSITION position) {
  return reinterpret_cast<Node*>(position);
}

POSITION CStringList::ToPosition(const Node& node) {
  return reinterpret_cast<POSITION>(const_cast<Node*>(&node));
}

POSITION CStringList::AddHead(const CString& text) {
  nodes_.push_front({text, {}});
  nodes_.front().self = nodes_.begin();
  return ToPosition(nodes_.front());
}

POSITION CStringList::AddTail(const CString& text) {
  nodes_.push_back({text, {}});
  nodes_.back().self = std::prev(nodes_.end());
  return ToPosition(nodes_.back());
}

CString CStringList::RemoveHead() {
  CString text = std::move(nodes_.front().text);
  nodes_.pop_front();
  return text;
}

CString CStringList::RemoveTail() {
  CString text = std::move(nodes_.back().text);
  nodes_.pop_back();
  return text;
}

void CStringList::RemoveAt(POSITION position) { nodes_.erase(ToNode(position)->self); }

POSITION CStringList::GetHeadPosition() const {
  return nodes_.empty() ? nullptr : ToPosition(nodes_.front());
}

POSITION CStringList::GetTailPosition() const {
  return nodes_.empty() ? nullptr : ToPosition(nodes_.back());
}

const CString& CStringList::GetNext(POSITION& position) const {
  const Node* node = ToNode(position);
  const auto next = std::next(Nodes::const_iterator(node->self));
  position = next == nodes_.end() ? nullptr : ToPosition(*next);
  return node->text;
}

const CString& CStringList::GetPrev(POSITION& position) const {
  const Node* node = ToNode(position);
  const Nodes::const_iterator self = node->self;
  position = self == nodes_.begin() ? nullptr : ToPosition(*std::prev(self));
  return node->text;
}

const CString& CStringList::GetAt(POSITION position) const { return ToNode(position)->text; }

void CStringList::SetAt(POSITION position, const CString& text) { ToNode(position)->text = text; }

POSITION CStringList::Find(const char* text) const {
  const auto hit =
      std::ranges::find_if(nodes_, [&](const Node& node) { return node.text == text; });
  return hit == nodes_.end() ? nullptr : ToPosition(*hit);
}

void CStringArray::SetSize(int size) { texts_.resize(static_cast<std::size_t>(std::max(size, 0))); }

void CStringArray::InsertAt(int index, CString text) {
  if (index > GetSize()) SetSize(index);
  texts_.insert(texts_.begin() + index, std::move(text));
}

void CStringArray::RemoveAt(int index, int count) {
  texts_.erase(texts_.begin() + index, texts_.begin() + index + count);
}

void CStringArray::Reserve(int count) {
  texts_.reserve(static_cast<std::size_t>(std::max(count, 0)));
}

void CStringArray::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    archive.WriteCount(static_cast<DWORD>(GetSize()));
    for (const CString& text : texts_) archive << text;
    return;
  }
  std::vector<CString> texts(archive.ReadCount());
  for (CString& text : texts) archive >> text;
  texts_ = std::move(texts);
}

}  // namespace dq
