#include "ctl/service_code.h"

#include "ctl/error.h"
#include "talvek/cdma_provisioning.h"

namespace ctl {

ServiceCode::ServiceCode() : m_code("service programming code")
{
    const std::string& text = m_code.Text();
    if (text.size() != 6 || text.find_first_not_of("0123456789") != std::string::npos)
        throw UsageError("a service programming code has six digits");
}

void ServiceCode::Unlock() const
{
    int32_t number = 0;
    for (const char digit : m_code.Text())
        number = number * 10 + (digit - '0');
    Check("OrvPstUnlock", OrvPstUnlock(number));
}

} // namespace ctl
