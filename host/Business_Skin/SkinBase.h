#pragma once

namespace Kestrel {

/// A field of result values over a part or a join, of whatever value type.
class SkinBase {
 public:
  virtual ~SkinBase();

 protected:
  SkinBase() = default;
  /// For derived classes alone, so that no field is cut.
  SkinBase(SkinBase const&) = default;
  /// As the copy.
  SkinBase& operator=(SkinBase const&) = default;
};

}  // namespace Kestrel
