#pragma once
// The contract checks of the record's callbacks; each skips itself when its slot is null.

#include "CheckReport.h"
#include "Provider.h"

namespace Orvo {
namespace Tools {
namespace MenuHost {

struct CallbackChecks {
    const Provider& provider;
    CheckReport& report;

    void freeString() const;
    void titles() const;
    void descriptions() const;
    void infoKey() const;
    void intValues() const;
    void valueTexts() const;
    void settingWrites() const;
    void valueStrings() const;
    void properties() const;
};

} // namespace MenuHost
} // namespace Tools
} // namespace Orvo
