#pragma once
// Runs a provider call on behalf of a connection: a failure is recorded in
// the connection's Errors and raised as the BasicError a Basic caller sees.
#include <exception>
#include <utility>

#include "platform/ado/ado.h"

namespace ado {

template <class F>
auto CallProvider(Connection& connection, F&& call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception& e) {
        connection.RaiseProviderFailure(e);
    }
}

}  // namespace ado
