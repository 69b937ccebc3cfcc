#pragma once

/// The heap of the whole program, all its threads included, which can be told to refuse a request: linked with
/// FailingHeap.cpp a test owns operator new.
namespace failing_heap {

/// How often: the one request, or that and all that follow.
enum class Refusal { Once, ForGood };

/// Refuses, with std::bad_alloc, the n-th request from now on, counted from 1.
void RefuseAt(long nth, Refusal refusal);
/// Refuses nothing any more, and returns how many requests there were since RefuseAt().
long Stop();

}  // namespace failing_heap
