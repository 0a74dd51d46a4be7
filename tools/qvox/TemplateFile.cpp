#include "TemplateFile.h"

#include <filesystem>
#include <system_error>

#include "qvox/platform/CodePage.h"
#include "qvox/platform/WholeFile.h"
#include "qvox/templates/CQVOXCOTFieldRules.h"
#include "qvox/templates/CQVOXXMLDOMHelper.h"
#include "qvox/templates/XmlDom.h"

namespace qvox::tool {

OpenedTemplate Open(const std::string& path) {
    OpenedTemplate opened;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return opened;
    CQVOXXMLDOMHelper probe;
    if (!probe.Load(CString(path))) {
        std::string bytes;
        opened.result =
            ReadWholeFile(path, kXmlMaxDocumentBytes, bytes) == ReadWholeFileResult::Unreadable
                ? Opened::Unreadable
                : Opened::Malformed;
        return opened;
    }
    if (!probe.GetElement("Template")) {
        opened.result = Opened::NotATemplate;
        return opened;
    }
    opened.type = probe.GetAttributeValue("Template", "Type").TextOrEmpty();
    if (opened.type == kCOTKindOCO) {
        opened.item = std::make_unique<CQVOXCOTOCOTemplate>();
    } else if (opened.type == kCOTKindOSO) {
        opened.item = std::make_unique<CQVOXCOTOSOTemplate>();
    } else {
        opened.result = Opened::UnknownKind;
        return opened;
    }
    opened.result = opened.item->Load(path.c_str()) ? Opened::Ok : Opened::Malformed;
    return opened;
}

std::string Why(const OpenedTemplate& opened) {
    switch (opened.result) {
        case Opened::Unreadable:
            return "cannot read the file";
        case Opened::Malformed:
            return "not a well-formed XML document (or beyond the limits of a template file: "
                   "4 MiB, 256 levels, 64 attributes to a tag, entities of plain text within 8 "
                   "MiB)";
        case Opened::NotATemplate:
            return "no Template element: not a conditional-order template";
        case Opened::UnknownKind:
            return "the Template's Type is \"" + Cp1252ToUtf8(opened.type.view()) +
                   "\", neither OCO nor OSO";
        case Opened::Ok:
            break;
    }
    return {};
}

}  // namespace qvox::tool
