// Counts the heap allocations of the calling thread, so that a test can prove that a path makes none.
//
//   AllocationCounter counter;
//   record.SetValue(0, 42.0);
//   EXPECT_EQ(counter.Count(), 0);

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

#endif  // VEYRA_TESTS_ALLOCATIONCOUNTER_H_
