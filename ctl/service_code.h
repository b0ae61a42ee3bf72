// The service programming code of a CDMA module.
#pragma once

#include "ctl/secret.h"

namespace ctl {

class ServiceCode {
public:
    // Reads it as a Secret. Throws UsageError unless it has six digits.
    ServiceCode();
    // Has the module check it; the library then keeps it until OrvIsModemReady. Throws CallFailed.
    void Unlock() const;

private:
    Secret m_code;
};

} // namespace ctl
