#pragma once

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

class EvalJoinGUID : public GUIdentifier {
 public:
  using GUIdentifier::GUIdentifier;
};

class EvalLineJoinGUID : public GUIdentifier {
 public:
  using GUIdentifier::GUIdentifier;
};

/// Compared, but in no order.
class EvalSimulationUnitJoinGUID : public GUIdentifier {
 public:
  using GUIdentifier::GUIdentifier;
};

bool operator<(EvalSimulationUnitJoinGUID const&, EvalSimulationUnitJoinGUID const&) = delete;

}  // namespace Kestrel
