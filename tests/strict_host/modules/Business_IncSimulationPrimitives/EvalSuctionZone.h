#pragma once

#include <string>
#include <utility>

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

class EvalSuctionZoneGUID : public GUIdentifier {
 public:
  using GUIdentifier::GUIdentifier;
};

class EvalSuctionZone {
 public:
  EvalSuctionZone(std::string presentationName, bool active)
      : m_presentationName(std::move(presentationName)), m_active(active) {}
  EvalSuctionZone(EvalSuctionZone const&) = delete;

  std::string const& getSuctionZonePresentationName() const { return m_presentationName; }
  bool getActive() const { return m_active; }

 private:
  std::string m_presentationName;
  bool m_active;
};

}  // namespace Kestrel
