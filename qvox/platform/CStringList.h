// CStringList: the platform's doubly linked list of strings, walked with POSITION values.
//
// A POSITION names one element and stays valid until that element is removed, whatever else is
// inserted or removed meanwhile; a null POSITION is "past the end". A POSITION is only meaningful
// for the list that gave it. Copies are deep: a copy's positions are its own.
#pragma once

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"

namespace qvox {

struct PositionTag;
using POSITION = PositionTag*;

class CStringList {
  public:
    CStringList() = default;
    CStringList(const CStringList& other);
    CStringList(CStringList&& other) noexcept;
    CStringList& operator=(const CStringList& other);
    CStringList& operator=(CStringList&& other) noexcept;
    ~CStringList();

    int GetCount() const noexcept { return count_; }
    int GetSize() const noexcept { return count_; }
    BOOL IsEmpty() const noexcept { return count_ == 0 ? TRUE : FALSE; }

    // On an empty list these give an empty string (a scratch one for the writable forms, whose
    // changes are lost) and change nothing.
    CString& GetHead();
    const CString& GetHead() const;
    CString& GetTail();
    const CString& GetTail() const;
    CString RemoveHead();
    CString RemoveTail();

    // Return the position of the new element.
    POSITION AddHead(const CString& value);
    POSITION AddTail(const CString& value);
    // Inserts a copy of every element of list in its order; adding a list to itself doubles it.
    // A null list adds nothing.
    void AddHead(const CStringList* list);
    void AddTail(const CStringList* list);

    // Null when the list is empty.
    POSITION GetHeadPosition() const noexcept;
    POSITION GetTailPosition() const noexcept;

    // The element at pos, moving pos to the next (previous) element or null. A null pos gives an
    // empty string as GetHead does on an empty list, and stays null.
    CString& GetNext(POSITION& pos);
    const CString& GetNext(POSITION& pos) const;
    CString& GetPrev(POSITION& pos);
    const CString& GetPrev(POSITION& pos) const;

    // A null pos reads as an empty string; SetAt and RemoveAt then do nothing.
    CString& GetAt(POSITION pos);
    const CString& GetAt(POSITION pos) const;
    void SetAt(POSITION pos, const CString& value);
    void RemoveAt(POSITION pos);

    // A null pos inserts at the head (InsertBefore) or the tail (InsertAfter).
    POSITION InsertBefore(POSITION pos, const CString& value);
    POSITION InsertAfter(POSITION pos, const CString& value);

    // The first element equal to value after startAfter (from the head when null), or null. A null
    // value matches the empty string.
    POSITION Find(const char* value, POSITION startAfter = nullptr) const noexcept;
    // The element at a zero-based index, or null when index is out of range.
    POSITION FindIndex(int index) const noexcept;

    void RemoveAll() noexcept;

  private:
    struct Node;

    static Node* ToNode(POSITION pos) noexcept;
    static POSITION ToPosition(Node* node) noexcept;
    POSITION Link(Node* prev, Node* next, const CString& value);

    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    int count_ = 0;
};

}  // namespace qvox
