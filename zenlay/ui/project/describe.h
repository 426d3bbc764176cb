// Answers to the host's queries: descriptions of effects and of the project as JSON text.
#pragma once

#include "zenlay/host/host_interface.h"

namespace zenlay {

/// See PluginQuery. 1 when answered.
int answerQuery(intptr_t query, QueryRequest*);

}  // namespace zenlay
