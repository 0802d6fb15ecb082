#pragma once
// What a client's model is told about this server when it connects.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

/// The "instructions" of the reply to "initialize".
extern const Phrase instructions;
