// Counts the heap allocations of the calling thread, so that a test can prove that a path makes none, or lets
// one of them fail.
//
//   AllocationCounter counter;
//   record.SetValue(0, 42.0);
//   EXPECT_EQ(counter.Count(), 0);
//
//   const AllocationFailure failure(2);   // two succeed, the third one throws std::bad_alloc

#ifndef VEYRA_TESTS_ALLOCATIONCOUNTER_H_
#define VEYRA_TESTS_ALLOCATIONCOUNTER_H_

class AllocationCounter {
 public:
  AllocationCounter();
  // Calls of operator new in this thread since construction.
  long Count() const;

 private:
  long fStart;
};

// One at a time in a thread; later allocations succeed again.
class AllocationFailure {
 public:
  explicit AllocationFailure(long successes);
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;
  ~AllocationFailure();  // what did not happen will not
  bool HasHappened() const;
};

#endif  // VEYRA_TESTS_ALLOCATIONCOUNTER_H_
