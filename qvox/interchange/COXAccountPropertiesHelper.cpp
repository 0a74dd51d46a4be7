#include "qvox/interchange/COXAccountPropertiesHelper.h"

namespace qvox {

bool COXAccountPropertiesHelper::GetAccountValueProperty(int number, double& value) const {
    return m_view.Value(number, value);
}

double COXAccountPropertiesHelper::GetAccountValueProperty(int number) const {
    double value = 0.0;
    return m_view.Value(number, value) ? value : 0.0;
}

CString COXAccountPropertiesHelper::GetAccountStatus() const {
    return GetStatusCode(static_cast<char>(static_cast<ULONG>(m_view.Long(5, 0)) & 0xFFu));
}

CString COXAccountPropertiesHelper::GetStatusCode(char code) {
    switch (code >= 'a' && code <= 'z' ? static_cast<char>(code - 'a' + 'A') : code) {
        case 'A':
            return "Active";
        case 'C':
            return "Closing Transactions Only";
        case 'F':
            return "Margin Call";
        case 'I':
            return "Inactive";
        case 'L':
            return "Liquidating Trades Only";
        case 'R':
            return "Restricted";
        case 'X':
            return "Closed";
        default:
            return CString();
    }
}

}  // namespace qvox
