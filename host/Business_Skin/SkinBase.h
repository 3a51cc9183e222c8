#pragma once

namespace Kestrel {

/// A field of result values over a part or a join, of whatever value type.
class SkinBase {
 public:
  virtual ~SkinBase();

 protected:
  SkinBase() = default;
  SkinBase(SkinBase const&) = default;
  SkinBase& operator=(SkinBase const&) = default;
};

}  // namespace Kestrel
