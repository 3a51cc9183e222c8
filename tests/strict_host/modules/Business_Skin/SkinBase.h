#pragma once

namespace Kestrel {

class SkinBase {
 public:
  SkinBase() = default;
  SkinBase(SkinBase const&) = delete;
  virtual ~SkinBase();
};

}  // namespace Kestrel
