#pragma once

/// Stands between the library and lcms2, for the test program that it is linked into: knows what is
/// open, and makes calls fail. The calls that count are those which can fail: to open a profile, to
/// save one, to read its description, to make a transform.
namespace FaultyCMS {

/// The `call`-th call from now on fails, once; 0 for none.
void FailAt(int call);
/// Whether that call has come.
bool HasFailed();

/// Profiles and transforms that are open.
int OpenHandles();

} // namespace FaultyCMS
