#include "qvox/templates/XmlDom.h"

#include <libxml/SAX2.h>
#include <libxml/entities.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "qvox/platform/CodePage.h"
#include "qvox/platform/ComObject.h"
#include "qvox/platform/WholeFile.h"

namespace qvox {
namespace {

// ---- Small helpers over libxml2's types ----

std::string_view View(const xmlChar* text) {
    return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
}

// libxml2 keeps global tables that must be set up once before threads use it.
void InitParserOnce() {
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
}

bool IsBlankChar(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool IsBlank(std::string_view text) {
    for (const char c : text) {
        if (!IsBlankChar(c)) return false;
    }
    return true;
}

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && IsBlankChar(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlankChar(text.back()))
        text.remove_suffix(1);
    return text;
}

// Text that a document can hold and write back: valid UTF-8 with no character that XML 1.0
// leaves out (C0 controls other than tab, line feed and carriage return; U+FFFE and U+FFFF).
bool IsXmlText(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 && c != '\t' && c != '\n' && c != '\r') return false;
        if (c == 0xEF && i + 2 < text.size() && static_cast<unsigned char>(text[i + 1]) == 0xBF &&
            (static_cast<unsigned char>(text[i + 2]) & 0xFE) == 0xBE)
            return false;
    }
    const std::string terminated(text);
    return xmlCheckUTF8(reinterpret_cast<const xmlChar*>(terminated.c_str())) != 0;
}

bool IsXmlName(std::string_view name) {
    if (name.empty() || name.size() > 50000) return false;
    const std::string terminated(name);
    if (terminated.size() != std::char_traits<char>::length(terminated.c_str())) return false;
    return xmlValidateNCName(reinterpret_cast<const xmlChar*>(terminated.c_str()), 0) == 0;
}

const xmlChar* AsXml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

xmlNsPtr NamespaceOf(xmlNodePtr node) {
    if (node->type == XML_ELEMENT_NODE) return node->ns;
    if (node->type == XML_ATTRIBUTE_NODE) return reinterpret_cast<xmlAttrPtr>(node)->ns;
    return nullptr;
}

// Whether an element's or attribute's qualified name is name, without building it.
bool NameIs(xmlNodePtr node, std::string_view name) {
    const std::string_view local = View(node->name);
    const xmlNsPtr ns = NamespaceOf(node);
    if (ns == nullptr || ns->prefix == nullptr) return name == local;
    const std::string_view prefix = View(ns->prefix);
    return name.size() == prefix.size() + 1 + local.size() &&
           name.substr(0, prefix.size()) == prefix && name[prefix.size()] == ':' &&
           name.substr(prefix.size() + 1) == local;
}

std::string QualifiedName(xmlNodePtr node) {
    std::string name;
    const xmlNsPtr ns = NamespaceOf(node);
    if (ns != nullptr && ns->prefix != nullptr) {
        name = View(ns->prefix);
        name += ':';
    }
    name += View(node->name);
    return name;
}

// The node after node in document order inside root's subtree. Only elements and the document
// are entered: never an entity reference (whose children are its entity's declaration), an
// attribute or the doctype.
xmlNodePtr NextInTree(xmlNodePtr node, const xmlNode* root) {
    if ((node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE) &&
        node->children != nullptr)
        return node->children;
    while (node != root) {
        if (node->next != nullptr) return node->next;
        node = node->parent;
        if (node == nullptr) return nullptr;
    }
    return nullptr;
}

// ---- Ownership ----

// Holders of a node count themselves in its _private word, which libxml2 leaves to its users.
std::uintptr_t Holders(const xmlNode* node) {
    return reinterpret_cast<std::uintptr_t>(node->_private);
}
void Hold(xmlNodePtr node) {
    node->_private = reinterpret_cast<void*>(Holders(node) + 1);
}
void LetGo(xmlNodePtr node) {
    node->_private = reinterpret_cast<void*>(Holders(node) - 1);
}

bool AnyHeld(xmlNodePtr top) {
    for (xmlNodePtr node = top; node != nullptr; node = NextInTree(node, top)) {
        if (Holders(node) != 0) return true;
        if (node->type != XML_ELEMENT_NODE) continue;
        for (xmlAttrPtr a = node->properties; a != nullptr; a = a->next) {
            if (Holders(reinterpret_cast<xmlNodePtr>(a)) != 0) return true;
        }
    }
    return false;
}

// One parsed or built content: the libxml2 document, and the nodes of it that stand outside its
// tree (made and not attached yet, or taken out while held). Node objects and lists share it.
struct XmlTree {
    explicit XmlTree(xmlDocPtr document) : doc(document), revision(NextRevision()) {}
    ~XmlTree() {
        // Loose nodes first: their names may live in the document's dictionary.
        for (xmlNodePtr node : loose) {
            if (node->parent == nullptr) xmlFreeNode(node);
        }
        xmlFreeDoc(doc);
    }
    XmlTree(const XmlTree&) = delete;
    XmlTree& operator=(const XmlTree&) = delete;

    // A node just unlinked from its parent: freed, unless it or something in it is held.
    void Dispose(xmlNodePtr node) {
        if (!AnyHeld(node)) {
            xmlFreeNode(node);
            return;
        }
        try {
            loose.insert(node);
        } catch (const std::bad_alloc&) {
            // Kept alive for its holders rather than freed under them.
        }
    }

    // Every change of the content, made or attempted, takes a new revision.
    void Touch() { revision = NextRevision(); }

    // A number no content has had before: readers that keep texts compare it to know whether
    // what they kept still stands.
    static ULONGLONG NextRevision() { return ++latestRevision; }

    static inline std::atomic<ULONGLONG> latestRevision{0};

    xmlDocPtr doc;
    std::unordered_set<xmlNodePtr> loose;
    ULONGLONG revision;
};
using TreeRef = std::shared_ptr<XmlTree>;

TreeRef NewTree(xmlDocPtr doc) {
    if (doc == nullptr) throw std::bad_alloc();
    try {
        return std::make_shared<XmlTree>(doc);
    } catch (...) {
        xmlFreeDoc(doc);
        throw;
    }
}

TreeRef EmptyTree() {
    return NewTree(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0")));
}

// ---- Text with entity references replaced ----

// Appends the text of the node list from first: text and CDATA as they are, elements by their
// content, entity references by their replacement. Attributes are not text.
void AppendText(xmlDocPtr doc, xmlNodePtr first, std::string& out) {
    std::vector<xmlNodePtr> stack{first};
    while (!stack.empty()) {
        xmlNodePtr node = stack.back();
        if (node == nullptr) {
            stack.pop_back();
            continue;
        }
        stack.back() = node->next;
        switch (node->type) {
            case XML_TEXT_NODE:
            case XML_CDATA_SECTION_NODE:
                out += View(node->content);
                break;
            case XML_ELEMENT_NODE:
                stack.push_back(node->children);
                break;
            case XML_ENTITY_REF_NODE:
                if (const xmlEntityPtr entity = xmlGetDocEntity(doc, node->name))
                    stack.push_back(entity->children);
                break;
            default:
                break;
        }
    }
}

// ---- What a parsed document must pass ----

class Budget {
  public:
    bool Take(std::size_t units) {
        if (units > m_left) return false;
        m_left -= units;
        return true;
    }

  private:
    std::size_t m_left = kXmlMaxExpandedUnits;
};

// Element depth is bound by the parser, entity nesting by the parser too; this is far beyond
// both and only guards the walk itself.
constexpr std::size_t kMaxWalkNesting = 4096;

// The replacement of an entity reference as nodes, if the document may be accepted with it:
// the entity is declared in the document and internal, and the parser built its replacement.
bool Replacement(xmlDocPtr doc, xmlNodePtr reference, xmlNodePtr* content) {
    const xmlEntityPtr entity = xmlGetDocEntity(doc, reference->name);
    if (entity == nullptr || entity->etype != XML_INTERNAL_GENERAL_ENTITY) return false;
    if (entity->children == nullptr && entity->content != nullptr && entity->content[0] != 0)
        return false;
    *content = entity->children;
    return true;
}

// Counts the replacement of an entity reference, to any depth, against budget, as AppendText
// would read it with the attributes of its elements added.
bool CountReplacement(xmlDocPtr doc, xmlNodePtr reference, Budget& budget) {
    xmlNodePtr content = nullptr;
    if (!Replacement(doc, reference, &content)) return false;
    std::vector<xmlNodePtr> stack{content};
    while (!stack.empty()) {
        if (stack.size() > kMaxWalkNesting) return false;
        xmlNodePtr node = stack.back();
        if (node == nullptr) {
            stack.pop_back();
            continue;
        }
        stack.back() = node->next;
        std::size_t units = 1;
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE)
            units += View(node->content).size();
        if (!budget.Take(units)) return false;
        if (node->type == XML_ELEMENT_NODE) {
            stack.push_back(node->children);
            for (xmlAttrPtr a = node->properties; a != nullptr; a = a->next)
                stack.push_back(a->children);
        } else if (node->type == XML_ENTITY_REF_NODE) {
            if (!Replacement(doc, node, &content)) return false;
            stack.push_back(content);
        }
    }
    return true;
}

// Counts one attribute's value (text and entity references) against budget.
bool CountAttribute(xmlDocPtr doc, xmlAttrPtr attribute, Budget& budget) {
    if (!budget.Take(1)) return false;
    for (xmlNodePtr part = attribute->children; part != nullptr; part = part->next) {
        if (!budget.Take(1 + View(part->content).size())) return false;
        if (part->type == XML_ENTITY_REF_NODE && !CountReplacement(doc, part, budget)) return false;
    }
    return true;
}

// Drops the blank text nodes and decides whether the document may be accepted: every entity
// reference resolves inside the document, and the text with all replacements stays within
// kXmlMaxExpandedUnits.
bool Settle(xmlDocPtr doc) {
    Budget budget;
    const auto* root = reinterpret_cast<const xmlNode*>(doc);
    xmlNodePtr node = doc->children;
    while (node != nullptr) {
        xmlNodePtr next = NextInTree(node, root);
        switch (node->type) {
            case XML_TEXT_NODE:
                if (IsBlank(View(node->content))) {
                    xmlUnlinkNode(node);
                    xmlFreeNode(node);
                } else if (!budget.Take(1 + View(node->content).size())) {
                    return false;
                }
                break;
            case XML_ELEMENT_NODE:
                if (!budget.Take(1)) return false;
                for (xmlAttrPtr a = node->properties; a != nullptr; a = a->next) {
                    if (!CountAttribute(doc, a, budget)) return false;
                }
                break;
            case XML_ENTITY_REF_NODE:
                if (!budget.Take(1) || !CountReplacement(doc, node, budget)) return false;
                break;
            case XML_CDATA_SECTION_NODE:
            case XML_COMMENT_NODE:
            case XML_PI_NODE:
                if (!budget.Take(1 + View(node->content).size())) return false;
                break;
            default:  // the doctype, which has no content field
                if (!budget.Take(1)) return false;
                break;
        }
        node = next;
    }
    return true;
}

// ---- What reaches the parser ----

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// Every start tag of UTF-8 text holds at most kXmlMaxAttributes attributes (counted by their
// "=" outside quotes). Comments, CDATA sections, processing instructions and declarations are
// passed over; text can't hold a '<' of its own. Entities can't bring tags in (see
// CheckedEntityDecl), so the tags of the text are all the tags of the document.
bool TagsWithinBound(std::string_view text) {
    std::size_t at = 0;
    while ((at = text.find('<', at)) != std::string_view::npos) {
        const std::string_view rest = text.substr(at);
        std::string_view end;
        if (StartsWith(rest, "<!--")) {
            end = "-->";
        } else if (StartsWith(rest, "<![CDATA[")) {
            end = "]]>";
        } else if (StartsWith(rest, "<?")) {
            end = "?>";
        } else if (StartsWith(rest, "<!")) {
            at += 2;
            continue;
        }
        if (!end.empty()) {
            const std::size_t close = text.find(end, at + 2);
            if (close == std::string_view::npos) return true;
            at = close + end.size();
            continue;
        }
        std::size_t attributes = 0;
        char quote = 0;
        for (++at; at < text.size(); ++at) {
            const char c = text[at];
            if (quote != 0) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '=') {
                if (++attributes > kXmlMaxAttributes) return false;
            } else if (c == '>') {
                break;
            }
        }
    }
    return true;
}

// The encoding named by the XML declaration at the start of ASCII-compatible bytes, or empty.
std::string DeclaredEncoding(std::string_view bytes) {
    if (!StartsWith(bytes, "<?xml")) return {};
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    const std::size_t name = declaration.find("encoding");
    if (name == std::string_view::npos) return {};
    std::size_t at = name + 8;
    const auto skipBlanks = [&] {
        while (at < declaration.size() && IsBlankChar(declaration[at]))
            ++at;
    };
    skipBlanks();
    if (at >= declaration.size() || declaration[at] != '=') return {};
    ++at;
    skipBlanks();
    if (at >= declaration.size() || (declaration[at] != '"' && declaration[at] != '\'')) return {};
    const char quote = declaration[at++];
    const std::size_t close = declaration.find(quote, at);
    if (close == std::string_view::npos || close - at > 40) return {};
    std::string encoding(declaration.substr(at, close - at));
    for (const char c : encoding) {
        const bool allowed = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                             (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' || c == ':';
        if (!allowed) return {};
    }
    return encoding;
}

bool IsUtf8Name(std::string encoding) {
    for (char& c : encoding)
        c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    return encoding == "UTF-8" || encoding == "UTF8";
}

// bytes in the named encoding as UTF-8; empty when the encoding is unknown or a byte doesn't
// belong to it.
std::optional<std::string> Convert(std::string_view bytes, const char* encoding) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding, &error),
                                                                       &ucnv_close);
    if (U_FAILURE(error) || !converter) return std::nullopt;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    if (U_FAILURE(error)) return std::nullopt;
    // No encoding gives more UTF-16 units than bytes, BOM and all.
    std::u16string units(bytes.size() + 1, u'\0');
    const int32_t length =
        ucnv_toUChars(converter.get(), units.data(), static_cast<int32_t>(units.size()),
                      bytes.data(), static_cast<int32_t>(bytes.size()), &error);
    if (U_FAILURE(error) || length < 0) return std::nullopt;
    units.resize(static_cast<std::size_t>(length));
    if (!units.empty() && units.front() == u'\uFEFF') units.erase(0, 1);
    return Utf16ToUtf8(units);
}

// The bytes of a file as UTF-8, the encoding told by a byte order mark, the first bytes or the
// XML declaration (UTF-8 when none says otherwise). Encodings whose markup isn't ASCII (UCS-4,
// EBCDIC) other than UTF-16 aren't taken: empty.
std::optional<std::string> FileTextAsUtf8(std::string_view bytes) {
    const auto starts = [&](std::string_view prefix) { return StartsWith(bytes, prefix); };
    using namespace std::string_view_literals;
    if (starts("\xEF\xBB\xBF"sv)) return std::string(bytes.substr(3));
    if (starts("\xFF\xFE\x00\x00"sv) || starts("\x00\x00\xFE\xFF"sv) || starts("\x00\x00\x00<"sv) ||
        starts("<\x00\x00\x00"sv) || starts("\x00\x00<\x00"sv) || starts("\x00<\x00\x00"sv) ||
        starts("\x4C\x6F\xA7\x94"sv))
        return std::nullopt;
    if (starts("\xFF\xFE"sv) || starts("<\x00?\x00"sv)) return Convert(bytes, "UTF-16LE");
    if (starts("\xFE\xFF"sv) || starts("\x00<\x00?"sv)) return Convert(bytes, "UTF-16BE");
    const std::string encoding = DeclaredEncoding(bytes);
    if (encoding.empty() || IsUtf8Name(encoding)) return std::string(bytes);
    return Convert(bytes, encoding.c_str());
}

// Nothing is ever fetched, whatever the options of a future libxml2 would do by default.
xmlParserInputPtr RefuseEntity(void*, const xmlChar*, const xmlChar*) {
    return nullptr;
}
void IgnoreExternalSubset(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}

// An entity declaration is taken only for an internal general entity of plain text: markup in a
// replacement could hold tags the bound on attributes never saw, parameter entities could build
// such text, and an external entity's text is never fetched. Anything else stops the parse.
void CheckedEntityDecl(void* context, const xmlChar* name, int type, const xmlChar* publicId,
                       const xmlChar* systemId, xmlChar* content) {
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    if (type != XML_INTERNAL_GENERAL_ENTITY || View(content).find('<') != std::string_view::npos) {
        *static_cast<bool*>(parser->_private) = true;
        xmlStopParser(parser);
        return;
    }
    xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

// The accepted content of UTF-8 text, or null.
TreeRef Parse(std::string_view text) {
    if (StartsWith(text, "\xEF\xBB\xBF")) text.remove_prefix(3);
    // A NUL is no XML character; refused here, it also can't make the parser take the text for
    // UCS-4 by its first bytes.
    if (text.size() > kXmlMaxDocumentBytes || text.size() > static_cast<std::size_t>(INT_MAX) ||
        text.find('\0') != std::string_view::npos || !TagsWithinBound(text))
        return nullptr;
    InitParserOnce();
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                               &xmlFreeParserCtxt);
    if (!context) throw std::bad_alloc();
    bool refused = false;
    context->_private = &refused;
    context->sax->resolveEntity = &RefuseEntity;
    context->sax->externalSubset = &IgnoreExternalSubset;
    context->sax->entityDecl = &CheckedEntityDecl;
    const int options = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_NOERROR |
                        XML_PARSE_NOWARNING | XML_PARSE_IGNORE_ENC;
    // The text is UTF-8 and says so by its first bytes; naming the encoding would only send it
    // through a converter that copies it.
    xmlDocPtr doc = xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                      nullptr, nullptr, options);
    if (doc == nullptr) return nullptr;
    if (refused || !context->wellFormed || !context->nsWellFormed || !Settle(doc)) {
        xmlFreeDoc(doc);
        return nullptr;
    }
    return NewTree(doc);
}

// The writer's sink: appends to a string, which grows by doubling (a buffer that grows to the
// exact size on every write would make large documents quadratic).
int AppendToString(void* context, const char* bytes, int length) {
    try {
        static_cast<std::string*>(context)->append(bytes, static_cast<std::size_t>(length));
        return length;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

// The document as text, indented, with or without its declaration; empty for an empty
// document. False when the writer fails.
bool Serialize(xmlDocPtr doc, bool declaration, std::string& out) {
    out.clear();
    if (doc->children == nullptr) return true;
    const int options = XML_SAVE_FORMAT | (declaration ? 0 : XML_SAVE_NO_DECL);
    xmlSaveCtxtPtr save = xmlSaveToIO(&AppendToString, nullptr, &out, "UTF-8", options);
    if (save == nullptr) throw std::bad_alloc();
    const long written = xmlSaveDoc(save, doc);
    const int closed = xmlSaveClose(save);
    return written >= 0 && closed >= 0;
}

// Runs f, turning the failures that may escape it into the status codes of the model.
template <typename F>
HRESULT Guard(F&& f) noexcept {
    try {
        return f();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const _com_error& e) {
        return e.Error();
    }
}

// ---- Node objects ----

// What every node object of ours is, beside its interface: a held node of one tree.
class XmlNodeCore {
  public:
    XmlNodeCore(TreeRef tree, xmlNodePtr node) : m_tree(std::move(tree)), m_node(node) {
        Hold(m_node);
    }
    virtual ~XmlNodeCore() { LetGo(m_node); }
    XmlNodeCore(const XmlNodeCore&) = delete;
    XmlNodeCore& operator=(const XmlNodeCore&) = delete;

    const TreeRef& Tree() const { return m_tree; }
    xmlNodePtr Node() const { return m_node; }

  protected:
    TreeRef m_tree;
    xmlNodePtr m_node;
};

// The node of ours behind an interface pointer, or null for anybody else's.
XmlNodeCore* CoreOf(IXmlNode* node) {
    return node == nullptr ? nullptr : dynamic_cast<XmlNodeCore*>(node);
}

IXmlNodePtr WrapNode(const TreeRef& tree, xmlNodePtr node);

// A list of held nodes. A list made by a query by name works itself out when it is first read:
// only as far as its first item when that is all that is asked for.
class NodeListObject final : public ComObject<IXmlNodeList> {
  public:
    NodeListObject(TreeRef tree, std::vector<xmlNodePtr> nodes)
        : m_tree(std::move(tree)), m_nodes(std::move(nodes)), m_complete(true) {
        for (xmlNodePtr node : m_nodes)
            Hold(node);
    }
    NodeListObject(TreeRef tree, xmlNodePtr root, std::string name)
        : m_tree(std::move(tree)), m_root(root), m_name(std::move(name)) {
        if (m_root->type != XML_DOCUMENT_NODE) Hold(m_root);
    }
    ~NodeListObject() override {
        LetGoAll();
        if (m_root != nullptr && m_root->type != XML_DOCUMENT_NODE) LetGo(m_root);
    }

    HRESULT GetLength(LONG* length) override {
        if (length == nullptr) return E_POINTER;
        *length = 0;
        return Guard([&] {
            Complete();
            *length = static_cast<LONG>(
                std::min<std::size_t>(m_nodes.size(), std::numeric_limits<LONG>::max()));
            return S_OK;
        });
    }

    HRESULT GetItem(LONG index, IXmlNode** node) override {
        if (node == nullptr) return E_POINTER;
        *node = nullptr;
        return Guard([&] {
            if (index < 0) return S_FALSE;
            const auto at = static_cast<std::size_t>(index);
            if (at >= m_nodes.size() && !(at == 0 && FindFirst())) Complete();
            if (at >= m_nodes.size()) return S_FALSE;
            *node = WrapNode(m_tree, m_nodes[at]).Detach();
            return S_OK;
        });
    }

  private:
    bool Matches(xmlNodePtr node) const {
        return node->type == XML_ELEMENT_NODE && NameIs(node, m_name);
    }

    // The first match alone; false when there is none or the list is already worked out.
    bool FindFirst() {
        if (m_complete || !m_nodes.empty()) return false;
        for (xmlNodePtr n = m_root->children; n != nullptr; n = NextInTree(n, m_root)) {
            if (Matches(n)) {
                m_nodes.push_back(n);
                Hold(n);
                return true;
            }
        }
        return false;
    }

    void Complete() {
        if (m_complete) return;
        std::vector<xmlNodePtr> found;
        for (xmlNodePtr n = m_root->children; n != nullptr; n = NextInTree(n, m_root)) {
            if (Matches(n)) found.push_back(n);
        }
        LetGoAll();
        m_nodes = std::move(found);
        for (xmlNodePtr node : m_nodes)
            Hold(node);
        m_complete = true;
    }

    void LetGoAll() {
        for (xmlNodePtr node : m_nodes)
            LetGo(node);
        m_nodes.clear();
    }

    TreeRef m_tree;
    std::vector<xmlNodePtr> m_nodes;
    bool m_complete = false;
    xmlNodePtr m_root = nullptr;
    std::string m_name;
};

HRESULT ChildList(const TreeRef& tree, xmlNodePtr parent, IXmlNodeList** children) {
    if (children == nullptr) return E_POINTER;
    *children = nullptr;
    return Guard([&] {
        std::vector<xmlNodePtr> nodes;
        if (parent->type == XML_ELEMENT_NODE || parent->type == XML_DOCUMENT_NODE) {
            for (xmlNodePtr c = parent->children; c != nullptr; c = c->next)
                nodes.push_back(c);
        }
        *children = MakeComObject<NodeListObject>(tree, std::move(nodes)).Detach();
        return S_OK;
    });
}

HRESULT QueryList(const TreeRef& tree, xmlNodePtr root, std::string_view name,
                  IXmlNodeList** list) {
    if (list == nullptr) return E_POINTER;
    *list = nullptr;
    return Guard([&] {
        *list = MakeComObject<NodeListObject>(tree, root, std::string(name)).Detach();
        return S_OK;
    });
}

// Moves child to the end of parent's children; see IXmlNode::AppendChild.
HRESULT AppendNode(const TreeRef& tree, xmlNodePtr parent, IXmlNode* child) {
    if (child == nullptr) return E_POINTER;
    tree->Touch();
    XmlNodeCore* core = CoreOf(child);
    if (core == nullptr || core->Tree() != tree) return E_INVALIDARG;
    if (parent->type != XML_ELEMENT_NODE && parent->type != XML_DOCUMENT_NODE) return E_FAIL;
    xmlNodePtr node = core->Node();
    switch (node->type) {
        case XML_ELEMENT_NODE:
        case XML_COMMENT_NODE:
        case XML_PI_NODE:
            break;
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_ENTITY_REF_NODE:
            if (parent->type == XML_DOCUMENT_NODE) return E_INVALIDARG;
            break;
        default:
            return E_INVALIDARG;
    }
    if (parent->type == XML_DOCUMENT_NODE && node->type == XML_ELEMENT_NODE) {
        const xmlNodePtr root = xmlDocGetRootElement(reinterpret_cast<xmlDocPtr>(parent));
        if (root != nullptr && root != node) return E_INVALIDARG;
    }
    // A node can be an ancestor of parent only when it has children (or is parent itself).
    if (node == parent) return E_INVALIDARG;
    if (node->children != nullptr) {
        for (xmlNodePtr up = parent; up != nullptr; up = up->parent) {
            if (up == node) return E_INVALIDARG;
        }
    }
    if (node->parent != nullptr) {
        xmlUnlinkNode(node);
    } else {
        tree->loose.erase(node);
    }
    // Linked by hand: xmlAddChild would merge adjacent text nodes and free one that may be held.
    node->parent = parent;
    node->next = nullptr;
    node->prev = parent->last;
    if (parent->last != nullptr) {
        parent->last->next = node;
    } else {
        parent->children = node;
    }
    parent->last = node;
    return S_OK;
}

// Replaces every child of an element by one text node (none for empty text).
HRESULT ReplaceContent(XmlTree& tree, xmlNodePtr element, std::string_view text) {
    tree.Touch();
    xmlNodePtr node = nullptr;
    if (!text.empty()) {
        node = xmlNewDocTextLen(element->doc, reinterpret_cast<const xmlChar*>(text.data()),
                                static_cast<int>(text.size()));
        if (node == nullptr) return E_OUTOFMEMORY;
    }
    for (xmlNodePtr child = element->children; child != nullptr;) {
        xmlNodePtr next = child->next;
        xmlUnlinkNode(child);
        tree.Dispose(child);
        child = next;
    }
    if (node != nullptr) {
        node->parent = element;
        element->children = node;
        element->last = node;
    }
    return S_OK;
}

template <typename I>
class NodeObject : public ComObject<I>, public XmlNodeCore {
  public:
    NodeObject(TreeRef tree, xmlNodePtr node) : XmlNodeCore(std::move(tree), node) {}

    XmlNodeType GetNodeType() override {
        switch (m_node->type) {
            case XML_ELEMENT_NODE:
                return XmlNodeType::Element;
            case XML_ATTRIBUTE_NODE:
                return XmlNodeType::Attribute;
            case XML_TEXT_NODE:
                return XmlNodeType::Text;
            case XML_CDATA_SECTION_NODE:
                return XmlNodeType::CData;
            case XML_ENTITY_REF_NODE:
                return XmlNodeType::EntityReference;
            case XML_PI_NODE:
                return XmlNodeType::ProcessingInstruction;
            case XML_COMMENT_NODE:
                return XmlNodeType::Comment;
            case XML_DTD_NODE:
                return XmlNodeType::DocumentType;
            default:
                return XmlNodeType::Other;
        }
    }

    HRESULT GetNodeName(std::string* name) override {
        if (name == nullptr) return E_POINTER;
        return Guard([&] {
            switch (m_node->type) {
                case XML_ELEMENT_NODE:
                case XML_ATTRIBUTE_NODE:
                    *name = QualifiedName(m_node);
                    break;
                case XML_TEXT_NODE:
                    *name = "#text";
                    break;
                case XML_CDATA_SECTION_NODE:
                    *name = "#cdata-section";
                    break;
                case XML_COMMENT_NODE:
                    *name = "#comment";
                    break;
                default:
                    *name = View(m_node->name);
                    break;
            }
            return S_OK;
        });
    }

    HRESULT GetText(std::string* text) override {
        if (text == nullptr) return E_POINTER;
        return Guard([&] {
            text->clear();
            switch (m_node->type) {
                case XML_ELEMENT_NODE: {
                    std::string all;
                    AppendText(m_node->doc, m_node->children, all);
                    *text = TrimBlanks(all);
                    break;
                }
                case XML_ATTRIBUTE_NODE:
                    AppendText(m_node->doc, m_node->children, *text);
                    break;
                case XML_ENTITY_REF_NODE:
                    if (const xmlEntityPtr entity = xmlGetDocEntity(m_node->doc, m_node->name))
                        AppendText(m_node->doc, entity->children, *text);
                    break;
                case XML_TEXT_NODE:
                case XML_CDATA_SECTION_NODE:
                case XML_COMMENT_NODE:
                case XML_PI_NODE:
                    *text = View(m_node->content);
                    break;
                default:  // the doctype, which has no content field
                    break;
            }
            return S_OK;
        });
    }

    HRESULT PutText(std::string_view text) override {
        return Guard([&] {
            if (!IsXmlText(text)) return E_INVALIDARG;
            m_tree->Touch();
            switch (m_node->type) {
                case XML_ELEMENT_NODE:
                    return ReplaceContent(*m_tree, m_node, text);
                case XML_ATTRIBUTE_NODE:
                    return PutAttributeValue(text);
                case XML_COMMENT_NODE:
                    if (text.find("--") != std::string_view::npos ||
                        (!text.empty() && text.back() == '-'))
                        return E_INVALIDARG;
                    break;
                case XML_PI_NODE:
                    if (text.find("?>") != std::string_view::npos) return E_INVALIDARG;
                    break;
                case XML_TEXT_NODE:
                case XML_CDATA_SECTION_NODE:
                    if (m_node->type == XML_CDATA_SECTION_NODE &&
                        text.find("]]>") != std::string_view::npos)
                        return E_INVALIDARG;
                    break;
                default:
                    return E_FAIL;
            }
            xmlNodeSetContentLen(m_node, reinterpret_cast<const xmlChar*>(text.data()),
                                 static_cast<int>(text.size()));
            return View(m_node->content) == text ? S_OK : E_OUTOFMEMORY;
        });
    }

    HRESULT GetChildNodes(IXmlNodeList** children) override {
        return ChildList(m_tree, m_node, children);
    }

    HRESULT AppendChild(IXmlNode* child) override {
        return Guard([&] { return AppendNode(m_tree, m_node, child); });
    }

    ULONGLONG GetRevision() override { return m_tree->revision; }

  protected:
    // The value of an attribute node, taken literally: one text node, none when empty. Its old
    // children (text and entity references) are never handed out, so they go at once.
    HRESULT PutAttributeValue(std::string_view value) {
        xmlNodePtr node = nullptr;
        if (!value.empty()) {
            node = xmlNewDocTextLen(m_node->doc, reinterpret_cast<const xmlChar*>(value.data()),
                                    static_cast<int>(value.size()));
            if (node == nullptr) return E_OUTOFMEMORY;
            node->parent = m_node;
        }
        xmlFreeNodeList(m_node->children);
        m_node->children = node;
        m_node->last = node;
        return S_OK;
    }
};

class PlainNodeObject final : public NodeObject<IXmlNode> {
  public:
    using NodeObject::NodeObject;
};

class AttributeObject final : public NodeObject<IXmlAttribute> {
  public:
    using NodeObject::NodeObject;
    HRESULT GetValue(std::string* value) override { return GetText(value); }
    HRESULT PutValue(std::string_view value) override { return PutText(value); }
};

class ElementObject final : public NodeObject<IXmlElement> {
  public:
    using NodeObject::NodeObject;

    HRESULT GetElementsByTagName(std::string_view name, IXmlNodeList** list) override {
        return QueryList(m_tree, m_node, name, list);
    }

    HRESULT GetAttributeNode(std::string_view name, IXmlAttribute** attribute) override {
        if (attribute == nullptr) return E_POINTER;
        *attribute = nullptr;
        return Guard([&] {
            for (xmlAttrPtr a = m_node->properties; a != nullptr; a = a->next) {
                auto* node = reinterpret_cast<xmlNodePtr>(a);
                if (NameIs(node, name)) {
                    *attribute = MakeComObject<AttributeObject>(m_tree, node).Detach();
                    return S_OK;
                }
            }
            return S_FALSE;
        });
    }

    HRESULT SetAttributeNode(IXmlAttribute* attribute) override {
        if (attribute == nullptr) return E_POINTER;
        return Guard([&] {
            XmlNodeCore* core = CoreOf(attribute);
            if (core == nullptr || core->Tree() != m_tree) return E_INVALIDARG;
            xmlNodePtr node = core->Node();
            if (node->type != XML_ATTRIBUTE_NODE) return E_INVALIDARG;
            if (node->parent == m_node) return S_OK;
            if (node->parent != nullptr) return E_INVALIDARG;
            m_tree->Touch();
            const std::string name = QualifiedName(node);
            for (xmlAttrPtr a = m_node->properties; a != nullptr; a = a->next) {
                auto* old = reinterpret_cast<xmlNodePtr>(a);
                if (NameIs(old, name)) {
                    xmlUnlinkNode(old);
                    m_tree->Dispose(old);
                    break;
                }
            }
            m_tree->loose.erase(node);
            auto* added = reinterpret_cast<xmlAttrPtr>(node);
            added->parent = m_node;
            added->next = nullptr;
            added->prev = nullptr;
            if (m_node->properties == nullptr) {
                m_node->properties = added;
            } else {
                xmlAttrPtr last = m_node->properties;
                while (last->next != nullptr)
                    last = last->next;
                last->next = added;
                added->prev = last;
            }
            return S_OK;
        });
    }
};

IXmlNodePtr WrapNode(const TreeRef& tree, xmlNodePtr node) {
    switch (node->type) {
        case XML_ELEMENT_NODE:
            return IXmlNodePtr(MakeComObject<ElementObject>(tree, node).GetInterfacePtr());
        case XML_ATTRIBUTE_NODE:
            return IXmlNodePtr(MakeComObject<AttributeObject>(tree, node).GetInterfacePtr());
        default:
            return IXmlNodePtr(MakeComObject<PlainNodeObject>(tree, node).GetInterfacePtr());
    }
}

// ---- The document ----

class DocumentObject final : public ComObject<IXmlDocument> {
  public:
    DocumentObject() : m_tree(EmptyTree()) {}

    XmlNodeType GetNodeType() override { return XmlNodeType::Document; }

    HRESULT GetNodeName(std::string* name) override {
        if (name == nullptr) return E_POINTER;
        return Guard([&] {
            *name = "#document";
            return S_OK;
        });
    }

    HRESULT GetText(std::string* text) override {
        if (text == nullptr) return E_POINTER;
        return Guard([&] {
            std::string all;
            AppendText(m_tree->doc, m_tree->doc->children, all);
            *text = TrimBlanks(all);
            return S_OK;
        });
    }

    HRESULT PutText(std::string_view) override { return E_FAIL; }

    HRESULT GetChildNodes(IXmlNodeList** children) override {
        return ChildList(m_tree, Root(), children);
    }

    HRESULT AppendChild(IXmlNode* child) override {
        return Guard([&] { return AppendNode(m_tree, Root(), child); });
    }

    ULONGLONG GetRevision() override { return m_tree->revision; }

    HRESULT Load(std::string_view path, bool* loaded) override {
        if (loaded == nullptr) return E_POINTER;
        *loaded = false;
        return Guard([&] {
            std::string bytes;
            TreeRef content;
            if (ReadWholeFile(path, kXmlMaxDocumentBytes, bytes) == ReadWholeFileResult::Ok) {
                if (const std::optional<std::string> text = FileTextAsUtf8(bytes))
                    content = Parse(*text);
            }
            return Replace(std::move(content), loaded);
        });
    }

    HRESULT LoadXml(std::string_view text, bool* loaded) override {
        if (loaded == nullptr) return E_POINTER;
        *loaded = false;
        return Guard([&] { return Replace(Parse(text), loaded); });
    }

    HRESULT Save(std::string_view path) override {
        return Guard([&] {
            std::string text;
            if (!Serialize(m_tree->doc, true, text)) return E_FAIL;
            return WriteWholeFile(path, text) ? S_OK : E_FAIL;
        });
    }

    HRESULT GetXml(std::string* text) override {
        if (text == nullptr) return E_POINTER;
        return Guard([&] { return Serialize(m_tree->doc, false, *text) ? S_OK : E_FAIL; });
    }

    HRESULT GetElementsByTagName(std::string_view name, IXmlNodeList** list) override {
        return QueryList(m_tree, Root(), name, list);
    }

    HRESULT CreateElement(std::string_view name, IXmlElement** element) override {
        if (element == nullptr) return E_POINTER;
        *element = nullptr;
        return Guard([&] {
            if (!IsXmlName(name)) return E_INVALIDARG;
            const std::string terminated(name);
            xmlNodePtr node = xmlNewDocNode(m_tree->doc, nullptr, AsXml(terminated), nullptr);
            return Adopt(node, element);
        });
    }

    HRESULT CreateAttribute(std::string_view name, IXmlAttribute** attribute) override {
        if (attribute == nullptr) return E_POINTER;
        *attribute = nullptr;
        return Guard([&] {
            if (!IsXmlName(name)) return E_INVALIDARG;
            const std::string terminated(name);
            xmlAttrPtr node = xmlNewDocProp(m_tree->doc, AsXml(terminated), nullptr);
            return Adopt(reinterpret_cast<xmlNodePtr>(node), attribute);
        });
    }

    HRESULT GetDocumentElement(IXmlElement** element) override {
        if (element == nullptr) return E_POINTER;
        *element = nullptr;
        return Guard([&] {
            xmlNodePtr root = xmlDocGetRootElement(m_tree->doc);
            if (root == nullptr) return S_FALSE;
            *element = MakeComObject<ElementObject>(m_tree, root).Detach();
            return S_OK;
        });
    }

  private:
    xmlNodePtr Root() const { return reinterpret_cast<xmlNodePtr>(m_tree->doc); }

    // The new content, or an empty document when there is none.
    HRESULT Replace(TreeRef content, bool* loaded) {
        *loaded = content != nullptr;
        m_tree = content ? std::move(content) : EmptyTree();
        return S_OK;
    }

    // A node just made: the tree owns it until it is attached, a node object holds it.
    template <typename I>
    HRESULT Adopt(xmlNodePtr node, I** out) {
        if (node == nullptr) return E_OUTOFMEMORY;
        try {
            m_tree->loose.insert(node);
        } catch (...) {
            xmlFreeNode(node);
            throw;
        }
        using Object =
            std::conditional_t<std::is_same_v<I, IXmlElement>, ElementObject, AttributeObject>;
        *out = MakeComObject<Object>(m_tree, node).Detach();
        return S_OK;
    }

    TreeRef m_tree;
};

}  // namespace

IXmlDocumentPtr CreateXmlDocument() {
    try {
        return IXmlDocumentPtr(MakeComObject<DocumentObject>().GetInterfacePtr());
    } catch (const std::bad_alloc&) {
        _com_issue_error(E_OUTOFMEMORY);
    }
}

ULONGLONG XmlLatestRevision() {
    return XmlTree::latestRevision.load();
}

}  // namespace qvox
