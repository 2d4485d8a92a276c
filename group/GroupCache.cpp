#include "group/GroupCache.h"

GroupCache::~GroupCache() = default;
