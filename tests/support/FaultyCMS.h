#pragma once

#include <initializer_list>

/// Stands between the library and lcms2, for the test program that it is linked into: knows what is
/// open, and makes calls fail. The calls that count are those which can fail: to open a profile, to
/// save one, to read its description, to make a transform.
namespace FaultyCMS {

/// The `call`-th call from now on fails, once; 0 for none.
void FailAt(int call);
/// Whether that call has come.
bool HasFailed();

/// The sizes that the next questions for the size of a saved profile are answered with; the true
/// ones after them.
void AnswerSizes(std::initializer_list<unsigned int> sizes);

/// Profiles and transforms that are open.
int OpenHandles();

} // namespace FaultyCMS
