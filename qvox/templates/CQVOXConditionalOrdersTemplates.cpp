#include "qvox/templates/CQVOXConditionalOrdersTemplates.h"

#include <new>

#include "qvox/platform/CFileFind.h"
#include "qvox/platform/PlatformDirectories.h"
#include "qvox/platform/Variant.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"

namespace qvox {
namespace {

// The version that multiplied the stop offsets of stock options by 5.
constexpr LONG kStockOptionsVersion = 3;
constexpr LONG kStockOptionsCategory = 3;

template <typename T>
CQVOXConditionalOrdersTemplate* NewTemplate() {
    try {
        return new T();
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const _com_error& e) {
        if (e.Error() == E_OUTOFMEMORY) return nullptr;
        throw;
    }
}

LONG WholeNumber(_variant_t value) {
    value.ChangeType(VT_I4);
    return value.lVal;
}

}  // namespace

CQVOXConditionalOrdersTemplates::CQVOXConditionalOrdersTemplates(LONG category,
                                                                 const CString& directory)
    : m_Directory(directory), m_Category(category) {}

CQVOXConditionalOrdersTemplates::~CQVOXConditionalOrdersTemplates() = default;

CString CQVOXConditionalOrdersTemplates::GetCategoryFolder() const {
    switch (m_Category) {
        case 0:
            return "Futures";
        case 3:
            return "Stock Options";
        case 12:
            return "Forex";
        default:
            return "Stocks";
    }
}

CString CQVOXConditionalOrdersTemplates::GetFolder() const {
    char root[1024] = {};
    GetKelvarRootDir(root, sizeof root);
    CString folder(root);
    folder += "\\Templates\\Conditional Orders\\";
    folder += GetCategoryFolder();
    folder += "\\";
    folder += m_Directory;
    return folder;
}

void CQVOXConditionalOrdersTemplates::Load() {
    Clear();
    char root[1024] = {};
    GetKelvarRootDir(root, sizeof root);
    // Each level in turn; one that is there already is no matter.
    CString folder(root);
    for (const CString& level :
         {CString("Templates"), CString("Conditional Orders"), GetCategoryFolder(), m_Directory}) {
        folder += "\\";
        folder += level;
        CreateDirectoryA(folder, nullptr);
    }
    CFileFind finder;
    for (bool more = finder.FindFile(folder + "\\*.xml"); more;) {
        more = finder.FindNextFile();
        std::unique_ptr<CQVOXConditionalOrdersTemplate> item(CreateTemplate());
        if (item && item->Load(finder.GetFilePath())) m_Templates.push_back(std::move(item));
    }
    if (Upgrade()) {
        for (const auto& item : m_Templates)
            item->Save(nullptr);
    }
}

void CQVOXConditionalOrdersTemplates::Clear() {
    m_Templates.clear();
}

CQVOXConditionalOrdersTemplate* CQVOXConditionalOrdersTemplates::GetAt(int index) {
    if (index < 0 || index >= GetCount()) return nullptr;
    return m_Templates[static_cast<std::size_t>(index)].get();
}

CQVOXConditionalOrdersTemplate* CQVOXConditionalOrdersTemplates::Find(const CString& name) {
    for (const auto& item : m_Templates) {
        if (item->GetName() == name) return item.get();
    }
    return nullptr;
}

CQVOXConditionalOrdersTemplate* CQVOXConditionalOrdersTemplates::AddTemplate(bool addToList) {
    CQVOXConditionalOrdersTemplate* item = CreateTemplate();
    if (item != nullptr && addToList) m_Templates.emplace_back(item);
    return item;
}

bool CQVOXConditionalOrdersTemplates::HaveFilesChanged() {
    if (m_Templates.empty()) return true;
    for (const auto& item : m_Templates) {
        if (item->HasFileChanged()) return true;
    }
    return false;
}

bool CQVOXConditionalOrdersTemplates::Upgrade() {
    bool changed = false;
    for (const auto& item : m_Templates) {
        try {
            const LONG version = WholeNumber(_variant_t(item->GetVersion()));
            if (version >= kStockOptionsVersion || m_Category != kStockOptionsCategory) continue;
            const int collections = item->GetCount();
            for (int c = 0; c < collections; ++c) {
                CQVOXCOTCollection* collection = item->GetAt(c);
                const int orders = collection->GetCount();
                for (int o = 0; o < orders; ++o) {
                    CQVOXCOTField* stop = collection->GetAt(o)->GetAt(kCOTFieldPrice);
                    if (stop != nullptr && stop->GetCount() > 0) stop = stop->GetAt(kCOTFieldStop);
                    if (stop == nullptr || stop->GetUsage() != kCOTUsageOffset) continue;
                    const LONG offset = WholeNumber(stop->GetValue());
                    stop->SetValue(_variant_t(wrap32::mul(offset, 5)));
                    item->SetVersion("3");
                    changed = true;
                }
            }
        } catch (const _com_error&) {
            // A version or value that isn't a whole number: this template stays as it is now.
        }
    }
    return changed;
}

CQVOXCOTOCOTemplates::CQVOXCOTOCOTemplates(LONG category)
    : CQVOXConditionalOrdersTemplates(category, kCOTKindOCO) {}

CQVOXConditionalOrdersTemplate* CQVOXCOTOCOTemplates::CreateTemplate() {
    return NewTemplate<CQVOXCOTOCOTemplate>();
}

CQVOXCOTOSOTemplates::CQVOXCOTOSOTemplates(LONG category)
    : CQVOXConditionalOrdersTemplates(category, kCOTKindOSO) {}

CQVOXConditionalOrdersTemplate* CQVOXCOTOSOTemplates::CreateTemplate() {
    return NewTemplate<CQVOXCOTOSOTemplate>();
}

}  // namespace qvox
