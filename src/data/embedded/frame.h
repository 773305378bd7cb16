#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "data/embedded/slots.h"
#include "data/embedded/tree.h"

namespace korvel::data::embedded {

/// A batch or a procedure that runs: where it is, and what it gives back to the one that called it.
struct Frame {
  /// A variable of it whose value goes to one of the caller's at the end.
  struct Output {
    std::size_t from;
    int to;
  };

  std::shared_ptr<const Batch> program;
  std::size_t next = 0;  // statement
  std::vector<Variable> variables;
  std::vector<Output> outputs;
  int result = -1;  // the caller's variable for the result, -1: none
};

}  // namespace korvel::data::embedded
