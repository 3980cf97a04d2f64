#pragma once
// A provider that passes every call on to another one and first tells a
// listener about each statement, query and row write. The runner uses it
// to show the statements an upgrade sends (plan) and, as a test hook, to
// make one chosen call fail (fault_injection.h). The listener may raise
// (an ado::ProviderError) to make the call fail before it reaches the
// database.
#include <functional>
#include <memory>
#include <string>

#include "platform/ado/provider.h"

namespace kdhost {

// kOuterCommit: the commit of the transaction the run puts around an
// upgrader.
enum class TappedCall { kStatement, kQuery, kRowInsert, kRowUpdate, kCommit, kOuterCommit };

// "statement", "query", "row insert", "row update", "commit", "upgrader commit"
const char* TappedCallName(TappedCall call);

// text: the statement or query, or the table a row write goes to.
using CallListener = std::function<void(TappedCall call, const std::string& text)>;

std::unique_ptr<ado::Provider> TapProvider(std::unique_ptr<ado::Provider> inner, CallListener listener);

}  // namespace kdhost
