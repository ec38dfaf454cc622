// The machine that a scenario starts from: small, and with something of everything in it.
#pragma once

#include <memory>
#include <string>

#include "play/new_machine.h"
#include "play/running_machine.h"

namespace quorvale {

// `like` and `user` are those of the scenario's "machine" act; `number` tells the machines of one
// scenario apart, from 1: each has an identity of its own.
MachinePlan ScenarioPlan(const std::string& like, const std::string& user, int number);

// Makes the machine of such a plan in a folder of this host. Null with a sentence if it cannot be
// made.
std::unique_ptr<RunningMachine> MakeScenarioMachine(const std::string& folder,
                                                    const std::string& like,
                                                    const std::string& user, int number,
                                                    std::string* problem);

}  // namespace quorvale
