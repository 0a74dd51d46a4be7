// Generation: applying a template to a key order (Generate), filling one order from one template
// order (UpdateFields), and rounding the bracket quantities at the end (EndGenerate).
//
// The generation engine is not part of the library yet. Until it is, each of these entries
// raises _com_error(E_NOTIMPL), so that no caller can take a template for applied when it was
// not; everything else about a template (its file, tree, rules and error texts) works.
#include "qvox/platform/ComBase.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {

bool CQVOXConditionalOrdersTemplate::Generate(COrderBarProperties&, IUnknownPtr, double) {
    _com_issue_error(E_NOTIMPL);
}

bool CQVOXConditionalOrdersTemplate::UpdateFields(CQVOXCOTOrder*, COrderBarProperties&,
                                                  COrderBarProperties&, IUnknownPtr, double, bool) {
    _com_issue_error(E_NOTIMPL);
}

bool CQVOXConditionalOrdersTemplate::EndGenerate(COrderBarProperties&, IUnknownPtr, double) {
    _com_issue_error(E_NOTIMPL);
}

bool CQVOXCOTOCOTemplate::Generate(COrderBarProperties&, IUnknownPtr, double) {
    _com_issue_error(E_NOTIMPL);
}

bool CQVOXCOTOSOTemplate::Generate(COrderBarProperties&, IUnknownPtr, double) {
    _com_issue_error(E_NOTIMPL);
}

}  // namespace qvox
