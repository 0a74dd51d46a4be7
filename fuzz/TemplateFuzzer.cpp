// Template files from any bytes: the text is loaded as a template of either kind, and then every
// part of the tree is read and every field judged by the rules, as a generation would. Nothing
// may crash, throw or read out of bounds; and a document that loaded writes a text that loads
// again to the same text.
//
// Input: the first byte picks the kind (its low bit: OCO or OSO); the rest is UTF-8 text.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "FuzzCheck.h"
#include "qvox/platform/CodePage.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

using qvox::CQVOXConditionalOrdersTemplate;
using qvox::CQVOXCOTField;
using qvox::CQVOXCOTOrder;
using qvox::CString;
using qvox::fuzz::Require;

namespace {

// Judges one field (and its child fields) as every update of a generation begins.
void Judge(CQVOXConditionalOrdersTemplate& item, CQVOXCOTOrder* order, CQVOXCOTField* field) {
    CQVOXCOTField::SQVOXCOTFAttributes attributes;
    field->GetAttributes(attributes);
    if (!item.IsAttributeCombinationValid(attributes.Key().c_str()))
        item.AddAttributeCombinationError(CString(attributes.Key()), order, field);
    item.AddError("Invalid Value", field->GetValue().TextOrEmpty(), order, field);
    for (auto& [name, child] : field->m_Fields) {
        Require(child->IsChildField() && !name.empty());
        Judge(item, order, child.get());
    }
    Require(field->GetCount() == static_cast<int>(field->m_Fields.size()));
}

void Walk(CQVOXConditionalOrdersTemplate& item) {
    item.GetID();
    item.GetVersion();
    item.GetAction();
    item.ContainsBracketOrders();
    item.IsMultiPriceFieldTemplate();
    Require(item.GetProperties() != nullptr);
    item.GetProperties()->GetProperty("BRQ");
    for (int c = 0; c < item.GetCount(); ++c) {
        qvox::CQVOXCOTCollection* collection = item.GetAt(c);
        Require(collection != nullptr);
        collection->GetName();
        for (int o = 0; o < collection->GetCount(); ++o) {
            CQVOXCOTOrder* order = collection->GetAt(o);
            Require(order != nullptr && order->GetParent() == collection);
            for (const char* name :
                 {"Type", "Action", "Quantity", "Price", "Duration", "Route", "Advanced"})
                order->GetAt(name);
            for (auto& [name, field] : order->m_Fields)
                Judge(item, order, field.get());
        }
    }
    item.AddVerboseError("verbose");
    item.GetErrorMessage(false);
    item.GetErrorMessage(true);
}

std::wstring TextOf(CQVOXConditionalOrdersTemplate& item) {
    wchar_t* text = nullptr;
    Require(item.Save(&text) && text != nullptr);
    const std::unique_ptr<wchar_t[]> owned(text);
    return std::wstring(owned.get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool oso = (data[0] & 1u) != 0;
    const std::wstring text =
        qvox::Utf8ToWide(std::string_view(reinterpret_cast<const char*>(data + 1), size - 1));
    std::unique_ptr<CQVOXConditionalOrdersTemplate> item;
    if (oso) {
        item = std::make_unique<qvox::CQVOXCOTOSOTemplate>();
    } else {
        item = std::make_unique<qvox::CQVOXCOTOCOTemplate>();
    }
    if (!item->Load(text.c_str())) {
        Require(item->GetProperties() == nullptr);
        return 0;
    }
    Walk(*item);
    // Written and read back: the same document.
    const std::wstring written = TextOf(*item);
    const std::unique_ptr<CQVOXConditionalOrdersTemplate> again(item->Clone());
    Require(again != nullptr && again->GetProperties() != nullptr);
    Require(TextOf(*again) == written);
    Walk(*again);
    return 0;
}
