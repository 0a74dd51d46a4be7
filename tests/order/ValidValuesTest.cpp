// Validated values: the merge rule, the comparisons, and the archived form.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "qvox/order/QVOrderLeg.h"
#include "qvox/order/ValidDataT.h"
#include "qvox/order/ValidString.h"
#include "qvox/platform/CArchive.h"

namespace qvox {
namespace {

TEST(ValidString, MergeCopyAndDefaults) {
    ValidString target("AAPL");
    target = ValidString();  // an unmarked source changes nothing
    EXPECT_TRUE(target == "AAPL");

    ValidString stale;
    stale.SetDefault("DAY");
    const ValidString copy(stale);  // a copy keeps text and the missing mark
    EXPECT_TRUE(!copy.IsValid() && copy.GetText() == "DAY");
    target = stale;
    EXPECT_TRUE(target == "AAPL");
    target = ValidString("MSFT");
    EXPECT_TRUE(target == "MSFT");

    // A default is not a value: it never equals a text, yet it reads back.
    EXPECT_TRUE(stale != "DAY");
    EXPECT_FALSE(stale == CString("DAY"));
    EXPECT_TRUE(ValidString("DAY") == "DAY");
    EXPECT_FALSE(ValidString("DAY") == "day");

    ValidString other;
    other.SetDefault("GTC");
    EXPECT_TRUE(stale == other);  // both unmarked: equal whatever they hold
    EXPECT_TRUE(stale != ValidString("DAY"));
    EXPECT_TRUE(ValidString("x") != ValidString("y"));

    const ValidString repeated('-', 3), cut("ABCDEF", 2), wide(L"Caf\u00e9"),
        none(static_cast<const char*>(nullptr));
    EXPECT_TRUE(repeated == "---" && cut == "AB" && wide == "Caf\xe9" && none == "");

    ValidString formatted;
    formatted.Format("%s=%d", "TAG", 7);
    EXPECT_TRUE(formatted == "TAG=7");
    formatted.Invalid();
    EXPECT_TRUE(!formatted.IsValid() && formatted.GetText() == "TAG=7");
}

TEST(ValidDataT, MergeAndComparisons) {
    ValidDataT<short> side;
    EXPECT_FALSE(side == 0);  // unmarked equals no value, 0 included
    side = static_cast<short>('B');
    side = ValidDataT<short>();
    EXPECT_TRUE(side == 'B');

    // clang-format off
    const struct { bool aValid; double a; bool bValid; double b; bool differ; } cases[] = {
        {false, 1, false, 2, false}, {true, 1, false, 1, true}, {false, 1, true, 1, true},
        {true, 1, true, 1, false}, {true, 1, true, 2, true}, {true, NAN, true, NAN, true},
        {true, 0.0, true, -0.0, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        ValidDataT<double> a, b;
        a.value = c.a;
        a.valid = c.aValid;
        b.value = c.b;
        b.valid = c.bValid;
        EXPECT_EQ(a != b, c.differ) << c.aValid << c.a << c.bValid << c.b;
        EXPECT_EQ(a == b, !c.differ);
    }
    ValidDataT<bool> flag;
    flag.value = true;
    EXPECT_FALSE(flag.IsSetAndTrue());
}

TEST(QVOrderLeg, MergeCompareAndInvalidate) {
    QVOrderLeg leg;
    leg.m_Symbol = "ESH09";
    leg.m_Quantity = 5;
    leg.m_Side = static_cast<short>('B');
    const QVOrderLeg before(leg);
    leg = QVOrderLeg();
    EXPECT_TRUE(leg == before);

    QVOrderLeg update;
    update.m_Quantity = 7;
    leg = update;
    EXPECT_TRUE(leg.m_Quantity == 7 && leg.m_Symbol == "ESH09");

    // Invalidated texts still match by text; the numbers no longer do.
    QVOrderLeg unmarked(leg);
    unmarked.InValidAll();
    QVOrderLeg textOnly;
    textOnly.m_Symbol = "ESH09";
    QVOrderLeg textOnlyUnmarked(textOnly);
    textOnlyUnmarked.InValidAll();
    EXPECT_TRUE(textOnly == textOnlyUnmarked);
    EXPECT_FALSE(unmarked == leg);

    EXPECT_TRUE(leg.SetOrderAction(OrderActionSell, 3));
    EXPECT_TRUE(leg.m_Side == 'S' && leg.m_OpenClose == 'C');
    EXPECT_FALSE(leg.SetOrderAction(OrderActionSellShort, 0));
}

std::vector<BYTE> Store(const ValidString& value) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    ar << value;
    return file.Data();
}

TEST(ValidStringArchive, LayoutOfEveryLengthForm) {
    // The prefix is the mark, then the length bytes.
    // clang-format off
    const struct { std::size_t length; std::vector<BYTE> prefix; } forms[] = {
        {0, {1, 0, 0, 0, 0}}, {254, {1, 0, 0, 0, 254}}, {255, {1, 0, 0, 0, 0xFF, 0xFF, 0x00}},
        {0xFFFD, {1, 0, 0, 0, 0xFF, 0xFD, 0xFF}}, {0xFFFE, {1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0, 0}},
        {70000, {1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00}},
    };
    // clang-format on
    for (const auto& form : forms) {
        const ValidString value(CString('q', static_cast<int>(form.length)));
        const std::vector<BYTE> bytes = Store(value);
        ASSERT_EQ(bytes.size(), form.prefix.size() + form.length) << form.length;
        EXPECT_TRUE(std::equal(form.prefix.begin(), form.prefix.end(), bytes.begin()));

        CMemFile in(bytes);
        CArchive ar(&in, CArchive::load);
        ValidString back;
        back.SetDefault("old");
        ar >> back;
        EXPECT_TRUE(back.IsValid());
        EXPECT_EQ(CString(back).GetLength(), static_cast<int>(form.length));
    }
    EXPECT_EQ(Store(ValidString()), (std::vector<BYTE>{0, 0, 0, 0}));
}

// The CArchiveException that act throws; cause -1 when it throws none.
template <class Act>
CArchiveException Thrown(Act&& act) {
    try {
        act();
    } catch (const CArchiveException& e) {
        return e;
    }
    return CArchiveException(-1, "");
}

// Reads bytes into target; the cause of the exception, or -1.
int Load(std::vector<BYTE> bytes, ValidString& target) {
    CMemFile file(std::move(bytes));
    CArchive ar(&file, CArchive::load);
    return Thrown([&] { ar >> target; }).m_cause;
}

TEST(ValidStringArchive, ReadingRules) {
    // A zero mark leaves the target as it was, text and mark; any other mark sets it, here with
    // the wide form of the counted string (the euro sign comes back in the code page).
    ValidString target("kept");
    EXPECT_EQ(Load({0, 0, 0, 0}, target), -1);
    EXPECT_TRUE(target == "kept");
    EXPECT_EQ(Load({7, 0, 0, 0, 0xFF, 0xFE, 0xFF, 2, 'h', 0, 0xAC, 0x20}, target), -1);
    EXPECT_TRUE(target == "h\x80");

    // Short input, and a damaged length near 2^64 that must not become a huge allocation.
    EXPECT_EQ(Load({1, 0, 0, 0, 5, 'a', 'b'}, target), CArchiveException::endOfFile);
    EXPECT_EQ(Load({1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF,
                    0xFF, 0xFF, 0xFF, 0x7F},
                   target),
              CArchiveException::endOfFile);

    // Each direction used the wrong way.
    CMemFile file;
    CArchive loading(&file, CArchive::load);
    loading.m_strFileName = "orders.bin";
    const CArchiveException readOnly = Thrown([&] { loading << ValidString("x"); });
    EXPECT_TRUE(readOnly.m_cause == CArchiveException::readOnly &&
                readOnly.m_strFileName == "orders.bin");
    CArchive storing(&file, CArchive::store);
    EXPECT_EQ(Thrown([&] { storing >> target; }).m_cause, CArchiveException::writeOnly);
}

TEST(CArchive, NumbersAreLittleEndianAtTheirWidth) {
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        ar << static_cast<WORD>(0x0102) << static_cast<LONG>(-2) << 1.5 << static_cast<BYTE>(9);
        ar.WriteCount(3);
        ar.WriteCount(0x12345);
    }
    // clang-format off
    const std::vector<BYTE> expected = {0x02, 0x01, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F, 9,
                                        3, 0, 0xFF, 0xFF, 0x45, 0x23, 0x01, 0};
    // clang-format on
    EXPECT_EQ(file.Data(), expected);
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load);
    WORD w = 0;
    LONG l = 0;
    double d = 0;
    BYTE b = 0;
    ar >> w >> l >> d >> b;
    EXPECT_TRUE(w == 0x0102 && l == -2 && d == 1.5 && b == 9);
    EXPECT_EQ(ar.ReadCount(), 3u);
    EXPECT_EQ(ar.ReadCount(), 0x12345u);
    EXPECT_THROW(ar >> b, CArchiveException);
}

}  // namespace
}  // namespace qvox
