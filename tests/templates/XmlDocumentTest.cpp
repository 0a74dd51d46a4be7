// The XML door: what a document accepts and refuses, texts and attributes, documents shared by
// several helpers, nodes that outlive their helpers or leave their tree, failures, and saves
// that never damage the file on disk.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "TemplateTestSupport.h"
#include "qvox/platform/Bstr.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/CQVOXXMLDOMHelper.h"
#include "qvox/templates/XmlDom.h"

namespace qvox {
namespace {

using test::TempFolder;

std::wstring Wide(const std::string& utf8) {
    return Utf8ToWide(utf8);
}

std::u16string Units(const _variant_t& value) {
    return value.vt == VT_BSTR ? std::u16string(BstrView(value.bstrVal)) : u"<not text>";
}

// Ten entities, each ten times the one before: a thousand million "lol" when replaced.
std::string Laughs(const std::string& use) {
    std::string text = "<!DOCTYPE l [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i) {
        text += "<!ENTITY l" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
            text += "&l" + std::to_string(i - 1) + ";";
        text += "'>";
    }
    return text + "]>" + use;
}

TEST(XmlDocument, RefusesWhatIsNotWellFormedAndAcceptsWhatIs) {
    TempFolder folder;
    const std::string secret = folder.Write("secret.txt", "SECRET");
    std::string manyReferences = "<!DOCTYPE a [<!ENTITY k '" + std::string(1000, 'x') + "'>]><a>";
    for (int i = 0; i < 20000; ++i)
        manyReferences += "&k;";
    manyReferences += "</a>";
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    for (int i = 0; i < 100000; ++i)
        deep += "</a>";
    const auto attributes = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += " a" + std::to_string(i) + "='='";
        return text;
    };
    struct Case {
        const char* what;
        std::string text;
        bool loads;
    };
    const Case cases[] = {
        {"plain", "<a x='1'><b>t</b></a>", true},
        {"comments, instructions, CDATA",
         "<?xml version='1.0'?><!--c--><a><?p q?><![CDATA[<]]></a>", true},
        {"declared namespace", "<p:a xmlns:p='urn:x'><p:b/></p:a>", true},
        {"internal entity", "<!DOCTYPE a [<!ENTITY e 'hi'>]><a x='&e;'>&e;</a>", true},
        {"empty", "", false},
        {"blank", "  \n", false},
        {"text only", "hello", false},
        {"two roots", "<a/><b/>", false},
        {"truncated", "<a><b></b>", false},
        {"crossed", "<a><b></a></b>", false},
        {"duplicated attribute", "<a x='1' x='2'/>", false},
        {"bare & in attribute", "<a x='a&b'/>", false},
        {"< in attribute", "<a x='a<b'/>", false},
        {"undeclared entity", "<a>&nope;</a>", false},
        {"undeclared prefix", "<p:a/>", false},
        {"binary", std::string("\x00\x01\xFF<a/>", 7), false},
        {"entity left to an external DTD", "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>", false},
        {"external entity", "<!DOCTYPE a [<!ENTITY e SYSTEM '" + secret + "'>]><a>&e;</a>", false},
        {"external parameter entity", "<!DOCTYPE a [<!ENTITY % p SYSTEM '" + secret + "'>%p;]><a/>",
         false},
        {"parameter entity", "<!DOCTYPE a [<!ENTITY % p 'x'>]><a/>", false},
        {"entity holding markup", "<!DOCTYPE a [<!ENTITY e '&#60;b/>'>]><a>&e;</a>", false},
        {"a tag of 64 attributes", "<a" + attributes(64) + "/>", true},
        {"a tag of 65 attributes", "<a" + attributes(65) + "/>", false},
        {"UCS-4", std::string("\0\0\0<\0\0\0a\0\0\0/\0\0\0>", 16), false},
        {"replacement beyond the bound", manyReferences, false},
        {"a thousand million laughs in content", Laughs("<a>&l9;</a>"), false},
        {"a thousand million laughs in an attribute", Laughs("<a x='&l9;'/>"), false},
        {"100,000 levels", deep, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto start = std::chrono::steady_clock::now();
        CQVOXXMLDOMHelper fromText;
        EXPECT_EQ(fromText.Load(Wide(c.text).c_str()), c.loads);
        CQVOXXMLDOMHelper fromFile;
        EXPECT_EQ(fromFile.Load(folder.Write("case.xml", c.text).c_str()), c.loads);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
        if (!c.loads) {
            // A refused text leaves an empty document, not half of one.
            EXPECT_FALSE(fromText.GetElement("a"));
            wchar_t* text = nullptr;
            ASSERT_TRUE(fromText.Save(&text));
            EXPECT_STREQ(text, L"");
            delete[] text;
        }
        wchar_t* text = nullptr;
        ASSERT_TRUE(fromFile.Save(&text));
        EXPECT_EQ(std::wstring(text).find(L"SECRET"), std::wstring::npos);
        delete[] text;
    }
}

TEST(XmlDocument, HugeInputIsRefusedUnread) {
    TempFolder folder;
    const std::string path = folder / "huge.xml";
    { std::ofstream(path) << "<a>"; }
    ASSERT_EQ(::truncate(path.c_str(), 100 * 1024 * 1024), 0);  // 100 MB, sparse
    const auto start = std::chrono::steady_clock::now();
    CQVOXXMLDOMHelper helper;
    EXPECT_FALSE(helper.Load(path.c_str()));
    const std::wstring text = L"<a>" + std::wstring(kXmlMaxDocumentBytes, L'x') + L"</a>";
    EXPECT_FALSE(helper.Load(text.c_str()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    // Neither a folder nor a missing file is a document.
    EXPECT_FALSE(helper.Load(folder.path().string().c_str()));
    EXPECT_FALSE(helper.Load((folder / "missing.xml").c_str()));
    EXPECT_FALSE(helper.Load(static_cast<const wchar_t*>(nullptr)));
}

TEST(XmlDocument, TextsAttributesAndEncodings) {
    CQVOXXMLDOMHelper helper;
    ASSERT_TRUE(helper.Load(Wide("<!DOCTYPE r [<!ENTITY e 'hi'>]>\n<r>\n  <a x='&e;!' y=''>\n"
                                 "    &e;<b> th</b>ere <!--no--> \xE2\x82\xAC\xE6\x97\xA5\n  </a>\n"
                                 "  <c/>\n</r>")
                                .c_str()));
    const IUnknownPtr a = helper.GetElement("a");
    // Text joined across children, entities replaced, comments left out, ends trimmed.
    EXPECT_EQ(Units(helper.GetElementValue(a)), u"hi there  \u20AC\u65E5");
    EXPECT_EQ(Units(helper.GetAttributeValueFromElement("x", a)), u"hi!");
    EXPECT_EQ(Units(helper.GetAttributeValueFromElement("y", a)), u"");
    EXPECT_TRUE(helper.GetAttributeValueFromElement("z", a).IsEmpty());
    EXPECT_EQ(Units(helper.GetAttributeValue("c", "nothing")), u"<not text>");
    EXPECT_TRUE(helper.GetAttributeValue("nothing", "x").IsEmpty());
    EXPECT_FALSE(helper.GetElement("nothing"));
    EXPECT_TRUE(helper.GetElementValue(nullptr).IsEmpty());
    // The indenting blanks are no nodes: r has the children a and c.
    const IUnknownPtr children = helper.GetChildNodes(helper.GetElement("r"));
    ASSERT_EQ(helper.GetLength(children), 2);
    EXPECT_EQ(helper.GetNodeName(helper.GetItem(children, 1)), "c");
    EXPECT_FALSE(helper.GetItem(children, 2));
    // An attribute is not an element, a node list not a node.
    EXPECT_TRUE(helper.GetAttributeValueFromElement("x", helper.GetAttribute("x", a)).IsEmpty());
    EXPECT_TRUE(helper.GetElementValue(children).IsEmpty());

    // Writing: an attribute set twice is one attribute with the second value; texts go in as
    // single-byte text and come out in full.
    helper.AddAttribute(a, "x", "one");
    helper.AddAttribute(a, "x", "\x80 two");
    helper.SetElementText(helper.GetElement("c"), "caf\xE9 <&>");
    wchar_t* text = nullptr;
    ASSERT_TRUE(helper.Save(&text));
    const std::string written = WideToUtf8(text);
    delete[] text;
    EXPECT_NE(written.find("x=\"\xE2\x82\xAC two\" y=\"\""), std::string::npos) << written;
    EXPECT_NE(written.find("<c>caf\xC3\xA9 &lt;&amp;&gt;</c>"), std::string::npos) << written;

    // Files in other encodings, told by their declaration or byte order mark.
    TempFolder folder;
    EXPECT_TRUE(helper.Load(folder
                                .Write("latin.xml",
                                       "<?xml version='1.0' encoding='ISO-8859-1'?>"
                                       "<a>\xE9</a>")
                                .c_str()));
    EXPECT_EQ(Units(helper.GetElementValue(helper.GetElement("a"))), u"\u00E9");
    EXPECT_TRUE(helper.Load(folder
                                .Write("cp1252.xml",
                                       "<?xml version='1.0' encoding='windows-1252'?>"
                                       "<a>\x80</a>")
                                .c_str()));
    EXPECT_EQ(Units(helper.GetElementValue(helper.GetElement("a"))), u"\u20AC");
    EXPECT_TRUE(
        helper.Load(folder.Write("utf16.xml", std::string("\xFF\xFE<\0a\0/\0>\0", 10)).c_str()));
    EXPECT_TRUE(helper.GetElement("a"));
    std::string bigEndian;  // UTF-16BE told by its first bytes alone
    for (const char c : std::string("<?xml version='1.0' encoding='UTF-16'?><b/>"))
        bigEndian += std::string(1, '\0') + c;
    EXPECT_TRUE(helper.Load(folder.Write("utf16be.xml", bigEndian).c_str()));
    EXPECT_TRUE(helper.GetElement("b"));
    EXPECT_FALSE(helper.Load(
        folder.Write("unknown.xml", "<?xml version='1.0' encoding='nonesuch'?><a/>").c_str()));
    EXPECT_FALSE(helper.Load(folder
                                 .Write("invalid.xml",
                                        "<?xml version='1.0' encoding='US-ASCII'?>"
                                        "<a>\xE9</a>")
                                 .c_str()));
}

TEST(XmlDocument, HelpersShareOneDocumentUntilOneLoadsAFile) {
    TempFolder folder;
    const std::string path = folder.Write("b.xml", "<b/>");
    CQVOXXMLDOMHelper first;
    ASSERT_TRUE(first.Load(L"<a/>"));
    CQVOXXMLDOMHelper second(first.GetDocument());
    CQVOXXMLDOMHelper third;
    third = first;
    second.AddAttribute(second.GetElement("a"), "n", "2");
    EXPECT_EQ(first.GetAttributeValue("a", "n").TextOrEmpty(), "2");
    // Parsing text changes the one document for all of its holders...
    ASSERT_TRUE(third.Load(L"<c/>"));
    EXPECT_TRUE(first.GetElement("c"));
    // ...loading a file gives the helper a document of its own.
    ASSERT_TRUE(second.Load(path.c_str()));
    EXPECT_TRUE(second.GetElement("b"));
    EXPECT_FALSE(first.GetElement("b"));
    EXPECT_TRUE(first.GetElement("c"));
}

TEST(XmlDocument, NodesOutliveHelpersAndTheTreeTheyLeft) {
    IUnknownPtr child;
    IUnknownPtr attribute;
    {
        CQVOXXMLDOMHelper helper;
        ASSERT_TRUE(helper.Load(L"<a><b k='v'>old</b><c/></a>"));
        child = helper.GetElement("b");
        attribute = helper.GetAttribute("k", child);
        const IUnknownPtr list = helper.GetElements("c");
        ASSERT_EQ(helper.GetLength(list), 1);  // a list is worked out when first read
        // The parent's text replaces its children; the held ones stay readable and writable.
        helper.SetElementText(helper.GetElement("a"), "new");
        EXPECT_EQ(helper.GetElementValue(helper.GetElement("a")).TextOrEmpty(), "new");
        EXPECT_EQ(helper.GetNodeName(helper.GetItem(list, 0)), "c");
        helper.AddAttribute(child, "k", "w");
        // New content for the document leaves the nodes of the old one working.
        ASSERT_TRUE(helper.Load(L"<z/>"));
        EXPECT_EQ(helper.GetElementValue(child).TextOrEmpty(), "old");
    }
    // The attribute was overwritten in place: the handle taken before sees the new value.
    CQVOXXMLDOMHelper reader(nullptr);
    EXPECT_EQ(reader.GetAttributeValueFromElement("k", child).TextOrEmpty(), "w");
    EXPECT_EQ(reader.GetElementValue(attribute).TextOrEmpty(), "w");
}

TEST(XmlDocument, FailuresRaiseOrGiveNull) {
    const auto code = [](auto&& action) {
        try {
            action();
        } catch (const _com_error& e) {
            return e.Error();
        }
        return S_OK;
    };
    CQVOXXMLDOMHelper helper;
    const IUnknownPtr root = helper.AddElement(nullptr, "r");
    ASSERT_TRUE(root);
    EXPECT_FALSE(helper.AddElement(nullptr, "second"));  // one root only
    EXPECT_FALSE(helper.AddElement(root, "not a name"));
    EXPECT_EQ(code([&] { helper.AddAttribute(nullptr, "x", "1"); }), E_POINTER);
    EXPECT_EQ(code([&] { helper.AddAttribute(root, "not a name", "1"); }), E_POINTER);
    EXPECT_EQ(code([&] { helper.SetElementText(nullptr, "t"); }), E_POINTER);
    EXPECT_EQ(code([&] { helper.AddElement(helper.GetElements("r"), "x"); }), E_POINTER);
    EXPECT_EQ(code([&] { helper.SetElementText(root, "bell\x07"); }), E_INVALIDARG);
    EXPECT_EQ(code([&] { helper.AddAttribute(root, "x", "nul\x01"); }), E_INVALIDARG);
    CQVOXXMLDOMHelper none(nullptr);
    none = IUnknownPtr();
    EXPECT_EQ(code([&] { none.AddElement(nullptr, "r"); }), E_POINTER);
    EXPECT_FALSE(none.Load(L"<a/>"));
    EXPECT_FALSE(none.GetElement("a"));
    wchar_t* text = nullptr;
    EXPECT_FALSE(none.Save(&text));
    EXPECT_FALSE(none.Save(CString("x.xml")));
}

TEST(XmlDocument, ASaveWritesTheWholeFileOrNothing) {
    TempFolder folder;
    CQVOXXMLDOMHelper helper;
    ASSERT_TRUE(helper.Load(L"<a>new</a>"));
    const std::string path = folder.Write("keep/t.xml", "<a>old</a>");
    ::chmod((folder / "keep").c_str(), 0555);
    if (::access((folder / "keep").c_str(), W_OK) != 0) {  // not when running as root
        EXPECT_FALSE(helper.Save(path.c_str()));
        EXPECT_EQ(TempFolder::Read(path), "<a>old</a>");
    }
    ::chmod((folder / "keep").c_str(), 0755);
    EXPECT_FALSE(helper.Save((folder / "missing/t.xml").c_str()));
    EXPECT_FALSE(helper.Save((folder / "keep").c_str()));
    EXPECT_TRUE(helper.Save((folder.path().string() + "\\keep\\t.xml").c_str()));
    EXPECT_EQ(TempFolder::Read(path), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>new</a>\n");
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder / "keep"))
        ++files;
    EXPECT_EQ(files, 1);  // no temporary file left behind
}

TEST(XmlDocument, DeepTreesBuiltInMemoryNeedNoDeepStack) {
    CQVOXXMLDOMHelper helper;
    IUnknownPtr node = helper.AddElement(nullptr, "n");
    const IUnknownPtr top = node;
    for (int i = 0; i < 100000; ++i)
        node = helper.AddElement(node, "n");
    helper.SetElementText(node, "bottom");
    EXPECT_EQ(helper.GetElementValue(top).TextOrEmpty(), "bottom");
    EXPECT_EQ(helper.GetLength(helper.GetElements("n", top)), 100000);
    wchar_t* text = nullptr;
    ASSERT_TRUE(helper.Save(&text));
    CQVOXXMLDOMHelper reader;
    EXPECT_FALSE(reader.Load(text));  // deeper than a document may be
    delete[] text;
    helper.SetElementText(top, "flat");  // frees the whole chain below but the held end
    EXPECT_EQ(helper.GetElementValue(node).TextOrEmpty(), "bottom");
}

}  // namespace
}  // namespace qvox
