// What the module does by itself in steps that take time: each step plans the next one, and a step that was planned
// before something else happened is void. Lock held by every caller.
#pragma once

#include "sim/command.h"

namespace sim {

enum class Progress : BYTE { Activation, Registration, Management, ExtendedManagement, Count };

// Plans the next step, in place of the one that is planned.
void PlanStep(Progress what, ULONG delay_ms);
// Nothing is planned any more.
void ForgetStep(Progress what);
// The module goes, or its client does: what was under way ends without a word.
void AbandonProgress();
void ResetProgress();

// The words "activation 3" and so on of the verb `module proceeds`.
void ProceedsVerb(Command& command);

// A step, and the end of what can take no more of them; one pair a service.
void StepActivation();
void AbandonActivation();
void StepRegistration();
void AbandonRegistration();
void StepManagement();
void AbandonManagement();
void StepExtendedManagement();
void AbandonExtendedManagement();

} // namespace sim
