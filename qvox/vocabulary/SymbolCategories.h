// What a symbol category (0 futures, 1 options on futures, 2 equities, 3 equity options, 4 and 8 a
// further underlying and its options, 12 forex, 254 invalid) means in other classifications, and
// the set of locked modules. The trade-symbol rules, the quantity split and the membership tests
// are members of COXUtil.
#pragma once

#include "qvox/platform/WinTypes.h"

namespace qvox {

// The category of an account, as bits.
enum EOXAccCategory : DWORD {
    AccCategoryNone = 0,
    AccCategoryFutures = 1,
    AccCategoryEquities = 2,
    AccCategoryOptions = 4,
    AccCategoryForex = 8,
};

// "FU" 0, "EQ" 2, "OP" 3, "FX" 12, compared without case. Any other code, and null, give 0.
ULONG GetSymbolCategoryFromCode(const char* code);
// "FU", "EQ", "OP" (for 3 and 8) or "FX"; "" for a category without a code.
const char* GetSymbolCodeFromCategory(ULONG category);
// The broad kind the server books a category under: 1 futures, 8 forex, 2 for everything else.
LONG TranslateCategory(LONG category);
// The category of the options on a category: 0 gives 1; 2 and 3 give 3; 4 and 8 give 8; 254
// (invalid) for every other category.
LONG GetOptionCategory(LONG category);
// The asset class bit: 1 equities, 2 options, 4 futures, 8 forex; 0 for any other category.
int GetAssetClassFromCategory(LONG category);

// A module of the application, as a bit mask the host defines.
using EOXModule = DWORD;

// Which of the application's modules are locked. Plain state kept for the host.
class COXLockedModulesX {
  public:
    void LockModule(EOXModule module) { m_bits |= module; }
    void UnlockModule(EOXModule module) { m_bits &= ~module; }
    void SetModuleLock(EOXModule module, bool locked) {
        locked ? LockModule(module) : UnlockModule(module);
    }
    // True only if every bit of the module is set (a mask of 0 counts as locked).
    bool IsModuleLocked(EOXModule module) const { return (m_bits & module) == module; }
    // Clears the bits of remove, then sets those of add.
    void ModifyLockedModules(ULONG remove, ULONG add) { m_bits = (m_bits & ~remove) | add; }
    ULONG GetLockedModules() const { return m_bits; }

  private:
    ULONG m_bits = 0;
};

}  // namespace qvox
