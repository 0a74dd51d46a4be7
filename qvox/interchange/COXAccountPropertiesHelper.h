// COXAccountPropertiesHelper: a typed, read-only view of an account as the platform reports it,
// through the account's property object, with the platform's account numbering. Absent
// properties give their defaults; a view without an object raises _com_error(E_POINTER), a value
// that does not convert the conversion's status.
#pragma once

#include "qvox/interchange/PropertyView.h"

namespace qvox {

// The platform's account words. The library passes their numbers through; -1 is "absent".
enum Account_Category : LONG {};
enum EOEAccntType : LONG {};
enum Account_State : LONG {};

class COXAccountPropertiesHelper {
  public:
    COXAccountPropertiesHelper() = default;
    explicit COXAccountPropertiesHelper(IMVProperties* properties) : m_view(properties) {}
    explicit COXAccountPropertiesHelper(IAccount* account) : m_view(PropertyView::Of(account)) {}

    bool IsGood() const { return m_view.IsGood(); }
    bool GetAccountValueProperty(int number, double& value) const;
    // The same, 0.0 when absent.
    double GetAccountValueProperty(int number) const;

    CString GetBrokerID() const { return m_view.Text(2); }
    CString GetAccountName() const { return m_view.Text(3); }
    // The text of the status code in the low byte of number 5; empty when absent.
    CString GetAccountStatus() const;
    // Only the value 1 says yes.
    bool IsDayTrader() const { return m_view.Long(46, 0) == 1; }
    bool CanDayTrade() const { return m_view.Long(47, 0) == 1; }
    int GetFourDaysTradeCount() const { return m_view.Int(49, 0); }
    Account_Category GetAccountCategory() const {
        return static_cast<Account_Category>(m_view.Long(51, -1));
    }
    int GetOptionsApprovalLevel() const { return m_view.Int(57, 0); }
    EOEAccntType GetAccountType() const { return static_cast<EOEAccntType>(m_view.Long(70, -1)); }
    Account_State GetAccountState() const {
        return static_cast<Account_State>(m_view.Long(75, -1));
    }

    // The words of the status codes, the code taken in upper case: 'A' "Active", 'C' "Closing
    // Transactions Only", 'F' "Margin Call", 'I' "Inactive", 'L' "Liquidating Trades Only",
    // 'R' "Restricted", 'X' "Closed"; any other code the empty text.
    static CString GetStatusCode(char code);

  private:
    PropertyView m_view;
};

}  // namespace qvox
