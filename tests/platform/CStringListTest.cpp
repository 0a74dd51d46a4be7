#include "qvox/platform/CStringList.h"
#include "qvox/platform/CUIntArray.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvox {
namespace {

// The list read forwards and backwards, so that a broken link in either direction shows.
CString Walk(const CStringList& list) {
    CString forward;
    CString backward;
    for (POSITION pos = list.GetHeadPosition(); pos != nullptr;)
        forward += list.GetNext(pos);
    for (POSITION pos = list.GetTailPosition(); pos != nullptr;)
        backward += list.GetPrev(pos);
    EXPECT_EQ(CString(backward).MakeReverse(), forward);
    EXPECT_EQ(forward.GetLength(), list.GetCount());
    return forward;
}

TEST(CStringList, PositionsSurviveOtherInsertionsAndRemovals) {
    CStringList list;
    const POSITION b = list.AddTail("b");
    list.AddHead("a");
    const POSITION c = list.InsertAfter(b, "c");
    list.InsertBefore(b, "x");
    list.InsertAfter(nullptr, "z");   // tail
    list.InsertBefore(nullptr, "0");  // head
    EXPECT_EQ(Walk(list), "0axbcz");
    list.RemoveAt(list.Find("x"));
    list.RemoveAt(c);
    list.RemoveAt(list.GetHeadPosition());
    list.RemoveAt(list.GetTailPosition());
    list.RemoveAt(nullptr);
    EXPECT_EQ(Walk(list), "ab");
    list.SetAt(b, "B");
    EXPECT_EQ(list.GetTail(), "B");
    EXPECT_EQ(list.RemoveHead(), "a");
    EXPECT_EQ(list.RemoveTail(), "B");
    EXPECT_TRUE(list.IsEmpty() && list.GetHeadPosition() == nullptr);
    EXPECT_EQ(list.GetTailPosition(), nullptr);

    // Find from a position, and FindIndex.
    CStringList found;
    for (const char* s : {"a", "", "b", "a"})
        found.AddTail(s);
    const POSITION second = found.Find("a", found.Find("a"));
    EXPECT_EQ(second, found.GetTailPosition());
    EXPECT_EQ(found.Find("a", second), nullptr);
    EXPECT_EQ(found.Find(nullptr), found.FindIndex(1));
    EXPECT_EQ(found.Find("zz"), nullptr);
    EXPECT_EQ(found.FindIndex(-1), nullptr);
    EXPECT_EQ(found.FindIndex(4), nullptr);
    EXPECT_EQ(found.GetAt(found.FindIndex(2)), "b");
}

TEST(CStringList, MissingElementsReadAsEmpty) {
    CStringList list;
    EXPECT_TRUE(list.GetHead() == "" && list.RemoveTail() == "");
    list.GetHead() = "lost";
    EXPECT_TRUE(list.GetTail() == "" && list.GetCount() == 0);
    POSITION pos = nullptr;
    EXPECT_TRUE(list.GetNext(pos) == "" && pos == nullptr);
    const CStringList& constant = list;
    EXPECT_EQ(constant.GetAt(nullptr), "");
    list.SetAt(nullptr, "x");
    EXPECT_TRUE(list.IsEmpty());
}

TEST(CStringList, WholeListsAndValueSemantics) {
    CStringList list;
    list.AddTail("b");
    list.AddTail("c");
    list.AddTail(&list);
    EXPECT_EQ(Walk(list), "bcbc");
    CStringList other;
    other.AddTail("x");
    other.AddTail("y");
    list.AddHead(&other);
    list.AddHead(&list);
    list.AddTail(nullptr);
    EXPECT_EQ(Walk(list), "xybcbcxybcbc");

    CStringList copy = list;
    copy.GetHead() = "changed";
    EXPECT_EQ(list.GetHead(), "x");
    const CStringList& alias = copy;
    copy = alias;
    CStringList moved = std::move(copy);
    EXPECT_EQ(moved.GetCount(), 12);
    EXPECT_TRUE(copy.IsEmpty());  // NOLINT(bugprone-use-after-move): moved-from is empty
    moved = other;
    EXPECT_EQ(Walk(moved), "xy");
    moved.RemoveAll();
    EXPECT_EQ(Walk(moved), "");
}

std::vector<UINT> Contents(const CUIntArray& a) {
    return std::vector<UINT>(a.GetData(), a.GetData() + a.GetSize());
}

TEST(CUIntArray, CheckedAccessAndGrowth) {
    CUIntArray a;
    EXPECT_EQ(a.GetUpperBound(), -1);
    a.SetSize(2);
    EXPECT_EQ(a.Add(7), 2);
    EXPECT_EQ(a.GetAt(-1), 0u);
    EXPECT_EQ(a.GetAt(3), 0u);
    a.SetAt(3, 9);
    a.SetAt(-1, 9);
    a.SetAtGrow(4, 5);
    a.SetAtGrow(-1, 5);
    EXPECT_EQ(Contents(a), (std::vector<UINT>{0, 0, 7, 0, 5}));
    a.InsertAt(1, 3, 2);
    a.InsertAt(9, 4, 2);  // past the end: zeros up to the index
    a.InsertAt(-1, 1);
    a.InsertAt(0, 1, 0);
    EXPECT_EQ(Contents(a), (std::vector<UINT>{0, 3, 3, 0, 7, 0, 5, 0, 0, 4, 4}));
    a.RemoveAt(8, 99);
    a.RemoveAt(0, 2);
    a.RemoveAt(20);
    a.RemoveAt(0, 0);
    a[0] = 8;
    EXPECT_EQ(Contents(a), (std::vector<UINT>{8, 0, 7, 0, 5, 0}));
    EXPECT_EQ(a.Append(a), 6);
    EXPECT_EQ(a.GetCount(), 12);
    CUIntArray b;
    b.Copy(a);
    b.Copy(b);
    EXPECT_EQ(Contents(b), Contents(a));
    a.SetSize(-1);
    EXPECT_TRUE(a.IsEmpty());
}

}  // namespace
}  // namespace qvox
