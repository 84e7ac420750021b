// Raising incidents from within the library: the pieces are counted by the compiler.

#pragma once

#include <type_traits>

#include "zor/incident.h"

namespace zor_internal {

template <typename... Pieces>
void raise(ZorIncidentContext* context, severity sev, incidentType type, Pieces... pieces) {
    static_assert((std::is_convertible_v<Pieces, char const*> && ...), "pieces are texts");
    zor_raiseIncident(context, sev, type, sizeof...(pieces), static_cast<char const*>(pieces)...);
}

template <typename... Pieces>
void raiseError(ZorIncidentContext* context, incidentType type, Pieces... pieces) {
    raise(context, severityError, type, pieces...);
}

} // namespace zor_internal
