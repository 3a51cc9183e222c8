#pragma once

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

/// Identifier of a point join in the evaluation.
class EvalJoinGUID : public GUIdentifier {
 public:
  EvalJoinGUID() = default;
  /// The same identifier as one of a point join.
  explicit EvalJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

/// Identifier of a line join in the evaluation.
class EvalLineJoinGUID : public GUIdentifier {
 public:
  EvalLineJoinGUID() = default;
  /// The same identifier as one of a line join.
  explicit EvalLineJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

/// Identifier of a join's definition in a simulation unit.
class EvalSimulationUnitJoinGUID : public GUIdentifier {
 public:
  EvalSimulationUnitJoinGUID() = default;
  /// The same identifier as one of a join's definition.
  explicit EvalSimulationUnitJoinGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

}  // namespace Kestrel
