#pragma once

/// Lets allocations of this process fail: those of C++, and of libcurl, libxml2, SQLite and OpenSSL, for which this
/// program brings the allocator.
namespace kartix::test::memory {

/// From now on allocations are counted, from 1, and `span` of them fail from number `first` on.
void failFrom(long first, long span) noexcept;

/// Nothing fails any more. The number of allocations since `failFrom`.
long failNoMore() noexcept;

}  // namespace kartix::test::memory
