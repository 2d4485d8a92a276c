#pragma once

/// What somebody keeps with a group and derives from its entities. It lives as long as the group, or shorter.
struct GroupCache {
  virtual ~GroupCache();
};
