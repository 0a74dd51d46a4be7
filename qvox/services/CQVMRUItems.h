// CQVMRUItems: a short list of the texts a user entered last, kept in one registry value below
// HKEY_CURRENT_USER and written back whenever the list is destroyed. CQVShortAwayMRU is the list
// of the brokers that the user located shares with.
//
// Stored form: a REG_SZ of every item followed by a comma, the last too ("ABCD,EFGH,"); an
// empty list is the empty text. Items are not escaped, so an item with a comma reads back as two.
// A stored value is read into a buffer of 100 bytes: one of more than 99 characters reads as no
// items (and the next save replaces it).
#pragma once

#include <vector>

#include "qvox/platform/CString.h"

namespace qvox {

class CQVMRUItems {
  public:
    // Empty location and value name, at most 10 items; reads nothing.
    CQVMRUItems();
    // Takes the key path and value name, at most 10 items, then ReadMRUFromReg.
    CQVMRUItems(CString const& location, CString const& value);
    CQVMRUItems(const CQVMRUItems& other) = default;
    CQVMRUItems& operator=(const CQVMRUItems& other) = default;
    // Saves the list, also when nothing changed; a failure to write loses the changes silently.
    virtual ~CQVMRUItems();

    // The most items that Add keeps; the items already held stay.
    void SetMRUNumber(int number);
    void SetRegistryLocation(CString const& location);
    void SetRegistryValue(CString const& value);

    // Appends the stored items, oldest first, to the list as it is: no limit, no check for
    // doubles, so a second call appends them again. Anything unreadable adds nothing.
    void ReadMRUFromReg();
    // Replaces the content of items by the list, oldest first.
    void GetMRUItems(std::vector<CString>& items);
    // Moves item to the end as the newest: an equal item (case counted) is removed first; if the
    // list then holds the most items or more, its oldest goes.
    void Add(CString const& item);

  private:
    // Writes the stored form under the location (created if missing).
    void Save();

    CString m_RegistryLocation;
    CString m_RegistryValue;
    int m_MRUNumber = 10;
    std::vector<CString> m_Items;
};

// The locate brokers: "LocateBrokerMRU" in the equities settings of the user's root key, read at
// construction.
class CQVShortAwayMRU : public CQVMRUItems {
  public:
    CQVShortAwayMRU();
    CQVShortAwayMRU(const CQVShortAwayMRU& other) = default;
    CQVShortAwayMRU& operator=(const CQVShortAwayMRU& other) = default;
    ~CQVShortAwayMRU() override;
};

}  // namespace qvox
