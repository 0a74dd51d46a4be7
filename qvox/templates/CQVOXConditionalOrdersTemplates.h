// CQVOXConditionalOrdersTemplates: the templates of one folder, one folder per template kind and
// symbol category under the platform's root directory:
//
//     <root>\Templates\Conditional Orders\<category folder>\<directory>
//
// with the category folder "Futures" (category 0), "Stocks" (2, and every category without a
// folder of its own), "Stock Options" (3) or "Forex" (12), and the directory "OCO" or "OSO"
// (CQVOXCOTOCOTemplates, CQVOXCOTOSOTemplates). Load makes the folders that are missing, reads
// every "*.xml" file of the kind, and brings old files up to date (Upgrade).
//
// The list owns its templates: Load, Clear and the destructor delete them, with every pointer
// GetAt, Find and AddTemplate(true) handed out. A list can't be copied (two owners of one
// template); it can be moved.
#pragma once

#include <memory>
#include <vector>

#include "qvox/platform/CString.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/templates/CQVOXConditionalOrdersTemplate.h"

namespace qvox {

class CQVOXConditionalOrdersTemplates {
  public:
    virtual ~CQVOXConditionalOrdersTemplates();
    CQVOXConditionalOrdersTemplates(const CQVOXConditionalOrdersTemplates&) = delete;
    CQVOXConditionalOrdersTemplates& operator=(const CQVOXConditionalOrdersTemplates&) = delete;
    CQVOXConditionalOrdersTemplates(CQVOXConditionalOrdersTemplates&&) noexcept = default;
    CQVOXConditionalOrdersTemplates& operator=(CQVOXConditionalOrdersTemplates&&) noexcept =
        default;

    // A new empty template of the list's kind, or null when memory runs out.
    virtual CQVOXConditionalOrdersTemplate* CreateTemplate() = 0;
    // Brings stock-option templates (category 3) below version 3 to version 3: the "Offset"
    // stop of every order (Price, or its child Stop) is multiplied by 5 and the Version becomes
    // "3". A template whose Version or value isn't a whole number is left where the failure
    // found it. True when some template was changed.
    virtual bool Upgrade();

    // Empties the list, makes the folders that are missing, and loads every "*.xml" file of the
    // folder, in name order, that is a template of the list's kind; any other file (unreadable,
    // malformed, of the other kind, a folder) is passed over without a word. When Upgrade
    // changes something, every template is saved to its own file.
    void Load();
    // Deletes every template.
    void Clear();
    int GetCount() const { return static_cast<int>(m_Templates.size()); }
    // The template at index; null when index isn't below the count.
    CQVOXConditionalOrdersTemplate* GetAt(int index);
    // The first template whose name is name exactly, or null.
    CQVOXConditionalOrdersTemplate* Find(const CString& name);
    // A new template from CreateTemplate, with no file until it is saved. With addToList it
    // joins the end of the list, which owns it; without, the caller owns it.
    CQVOXConditionalOrdersTemplate* AddTemplate(bool addToList);
    // True for an empty list, and when some template's file has changed or gone since it was
    // loaded. Files added to the folder are not noticed.
    bool HaveFilesChanged();

    LONG GetCategory() const { return m_Category; }
    void SetCategory(LONG category) { m_Category = category; }
    CString GetDirectory() const { return m_Directory; }
    void SetDirectory(const CString& directory) { m_Directory = directory; }
    // The list's folder, as Load uses it.
    CString GetFolder() const;

    CString m_Directory;
    LONG m_Category = 0;
    std::vector<std::unique_ptr<CQVOXConditionalOrdersTemplate>> m_Templates;

  protected:
    CQVOXConditionalOrdersTemplates(LONG category, const CString& directory);

    // The category's folder name.
    CString GetCategoryFolder() const;
};

class CQVOXCOTOCOTemplates : public CQVOXConditionalOrdersTemplates {
  public:
    explicit CQVOXCOTOCOTemplates(LONG category = 0);
    CQVOXConditionalOrdersTemplate* CreateTemplate() override;
};

class CQVOXCOTOSOTemplates : public CQVOXConditionalOrdersTemplates {
  public:
    explicit CQVOXCOTOSOTemplates(LONG category = 0);
    CQVOXConditionalOrdersTemplate* CreateTemplate() override;
};

}  // namespace qvox
