#pragma once
// The server's description of itself for the client's model.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

/// The "instructions" of the reply to "initialize".
extern const Phrase instructions;
