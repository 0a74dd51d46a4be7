#include "qvox/platform/CStringList.h"

#include <utility>

namespace qvox {

struct CStringList::Node {
    Node* prev;
    Node* next;
    CString value;
};

namespace {

// What the list hands out in place of a missing element. The writable one is cleared each time,
// so a caller that writes to it cannot affect a later read.
const CString& ReadOnlyNothing() {
    static const CString nothing;
    return nothing;
}

CString& WritableNothing() {
    thread_local CString nothing;
    nothing.Empty();
    return nothing;
}

}  // namespace

CStringList::Node* CStringList::ToNode(POSITION pos) noexcept {
    return reinterpret_cast<Node*>(pos);
}

POSITION CStringList::ToPosition(Node* node) noexcept {
    return reinterpret_cast<POSITION>(node);
}

CStringList::CStringList(const CStringList& other) {
    try {
        AddTail(&other);
    } catch (...) {
        RemoveAll();  // no destructor runs for a constructor that throws
        throw;
    }
}

CStringList::CStringList(CStringList&& other) noexcept
    : head_(std::exchange(other.head_, nullptr)),
      tail_(std::exchange(other.tail_, nullptr)),
      count_(std::exchange(other.count_, 0)) {}

CStringList& CStringList::operator=(const CStringList& other) {
    if (this != &other) {
        CStringList copy(other);
        *this = std::move(copy);
    }
    return *this;
}

CStringList& CStringList::operator=(CStringList&& other) noexcept {
    if (this != &other) {
        RemoveAll();
        head_ = std::exchange(other.head_, nullptr);
        tail_ = std::exchange(other.tail_, nullptr);
        count_ = std::exchange(other.count_, 0);
    }
    return *this;
}

CStringList::~CStringList() {
    RemoveAll();
}

POSITION CStringList::Link(Node* prev, Node* next, const CString& value) {
    Node* node = new Node{prev, next, value};
    (prev != nullptr ? prev->next : head_) = node;
    (next != nullptr ? next->prev : tail_) = node;
    ++count_;
    return ToPosition(node);
}

CString& CStringList::GetHead() {
    return head_ != nullptr ? head_->value : WritableNothing();
}
const CString& CStringList::GetHead() const {
    return head_ != nullptr ? head_->value : ReadOnlyNothing();
}
CString& CStringList::GetTail() {
    return tail_ != nullptr ? tail_->value : WritableNothing();
}
const CString& CStringList::GetTail() const {
    return tail_ != nullptr ? tail_->value : ReadOnlyNothing();
}

CString CStringList::RemoveHead() {
    if (head_ == nullptr) return CString();
    CString value = std::move(head_->value);
    RemoveAt(ToPosition(head_));
    return value;
}

CString CStringList::RemoveTail() {
    if (tail_ == nullptr) return CString();
    CString value = std::move(tail_->value);
    RemoveAt(ToPosition(tail_));
    return value;
}

POSITION CStringList::AddHead(const CString& value) {
    return Link(nullptr, head_, value);
}
POSITION CStringList::AddTail(const CString& value) {
    return Link(tail_, nullptr, value);
}

void CStringList::AddHead(const CStringList* list) {
    if (list == nullptr) return;
    // Counted first, walking backwards from the tail, so that a list added to itself stops after
    // its own elements.
    const Node* node = list->tail_;
    for (int left = list->count_; left > 0; --left, node = node->prev)
        AddHead(node->value);
}

void CStringList::AddTail(const CStringList* list) {
    if (list == nullptr) return;
    const Node* node = list->head_;
    for (int left = list->count_; left > 0; --left, node = node->next)
        AddTail(node->value);
}

POSITION CStringList::GetHeadPosition() const noexcept {
    return ToPosition(head_);
}
POSITION CStringList::GetTailPosition() const noexcept {
    return ToPosition(tail_);
}

CString& CStringList::GetNext(POSITION& pos) {
    Node* node = ToNode(pos);
    if (node == nullptr) return WritableNothing();
    pos = ToPosition(node->next);
    return node->value;
}

const CString& CStringList::GetNext(POSITION& pos) const {
    const Node* node = ToNode(pos);
    if (node == nullptr) return ReadOnlyNothing();
    pos = ToPosition(node->next);
    return node->value;
}

CString& CStringList::GetPrev(POSITION& pos) {
    Node* node = ToNode(pos);
    if (node == nullptr) return WritableNothing();
    pos = ToPosition(node->prev);
    return node->value;
}

const CString& CStringList::GetPrev(POSITION& pos) const {
    const Node* node = ToNode(pos);
    if (node == nullptr) return ReadOnlyNothing();
    pos = ToPosition(node->prev);
    return node->value;
}

CString& CStringList::GetAt(POSITION pos) {
    Node* node = ToNode(pos);
    return node != nullptr ? node->value : WritableNothing();
}

const CString& CStringList::GetAt(POSITION pos) const {
    const Node* node = ToNode(pos);
    return node != nullptr ? node->value : ReadOnlyNothing();
}

void CStringList::SetAt(POSITION pos, const CString& value) {
    if (Node* node = ToNode(pos)) node->value = value;
}

void CStringList::RemoveAt(POSITION pos) {
    Node* node = ToNode(pos);
    if (node == nullptr) return;
    (node->prev != nullptr ? node->prev->next : head_) = node->next;
    (node->next != nullptr ? node->next->prev : tail_) = node->prev;
    delete node;
    --count_;
}

POSITION CStringList::InsertBefore(POSITION pos, const CString& value) {
    Node* node = ToNode(pos);
    return node == nullptr ? AddHead(value) : Link(node->prev, node, value);
}

POSITION CStringList::InsertAfter(POSITION pos, const CString& value) {
    Node* node = ToNode(pos);
    return node == nullptr ? AddTail(value) : Link(node, node->next, value);
}

POSITION CStringList::Find(const char* value, POSITION startAfter) const noexcept {
    const Node* node = startAfter != nullptr ? ToNode(startAfter)->next : head_;
    for (; node != nullptr; node = node->next) {
        if (node->value == value) return ToPosition(const_cast<Node*>(node));
    }
    return nullptr;
}

POSITION CStringList::FindIndex(int index) const noexcept {
    if (index < 0 || index >= count_) return nullptr;
    Node* node = head_;
    for (; index > 0; --index)
        node = node->next;
    return ToPosition(node);
}

void CStringList::RemoveAll() noexcept {
    for (Node* node = head_; node != nullptr;)
        delete std::exchange(node, node->next);
    head_ = tail_ = nullptr;
    count_ = 0;
}

}  // namespace qvox
