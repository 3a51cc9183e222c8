#pragma once

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

/// Identifier of a point join in the evaluation.
class EvalJoinGUID : public GUIdentifier {
 public:
  EvalJoinGUID() = default;
  explicit EvalJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

/// Identifier of a line join in the evaluation.
class EvalLineJoinGUID : public GUIdentifier {
 public:
  EvalLineJoinGUID() = default;
  explicit EvalLineJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

/// Identifier of a join's definition in a simulation unit.
class EvalSimulationUnitJoinGUID : public GUIdentifier {
 public:
  EvalSimulationUnitJoinGUID() = default;
  explicit EvalSimulationUnitJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

}  // namespace Kestrel
