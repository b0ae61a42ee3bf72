// What a command throws when it cannot go on; main prints it as text or as JSON (docs/json.md).
#pragma once

#include "talvek/rcode.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace ctl {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr int kExitNoProgram = 127; // as a shell reports a program that cannot be started

// A function of the interface gave a result other than 0.
class CallFailed : public std::runtime_error {
public:
    // `remark` follows what the code means.
    CallFailed(const char* function, ORV_RCODE code, std::optional<ULONG> failure_reason = {},
               const std::string& remark = {});

    const char* Function() const { return m_function; }
    ORV_RCODE Code() const { return m_code; }
    // The vendor's reason, where the function gives one.
    std::optional<ULONG> FailureReason() const { return m_failure_reason; }

private:
    const char* m_function;
    ORV_RCODE m_code;
    std::optional<ULONG> m_failure_reason;
};

// A request with a PIN or a PUK was refused.
class PinRefused : public CallFailed {
public:
    // `cme_error`: ORV_CME_… `attempts_left`: with that PIN or PUK, where it is known.
    PinRefused(const char* function, ORV_RCODE code, ULONG cme_error, std::optional<ULONG> attempts_left);

    ULONG CmeError() const { return m_cme_error; }
    std::optional<ULONG> AttemptsLeft() const { return m_attempts_left; }

private:
    ULONG m_cme_error;
    std::optional<ULONG> m_attempts_left;
};

// A method of COrvGobiDll gave a vendor status other than 0.
class VendorCallFailed : public std::runtime_error {
public:
    VendorCallFailed(const char* method, ULONG status, std::optional<ULONG> failure_reason = {});

    const char* Method() const { return m_method; }
    ULONG Status() const { return m_status; }
    std::optional<ULONG> FailureReason() const { return m_failure_reason; }

private:
    const char* m_method;
    ULONG m_status;
    std::optional<ULONG> m_failure_reason;
};

// The client itself cannot go on: no simulator library, a scenario with a fault, an event that did not arrive.
class ClientError : public std::runtime_error {
public:
    explicit ClientError(const std::string& meaning, int status = kExitFailure)
        : std::runtime_error(meaning), m_status(status)
    {
    }

    int Status() const { return m_status; }

private:
    int m_status;
};

// The command line does not make sense.
class UsageError : public ClientError {
public:
    explicit UsageError(const std::string& meaning) : ClientError(meaning, kExitUsage) {}
};

// Throws CallFailed unless `code` is 0. `function` is a literal.
void Check(const char* function, ORV_RCODE code);
// Throws VendorCallFailed unless `status` is 0. `method` is a literal, without the class.
void CheckVendor(const char* method, ULONG status);

} // namespace ctl
