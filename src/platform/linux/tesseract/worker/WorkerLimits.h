#pragma once

namespace vantorel {

/// Makes this process one that nobody notices and that can do nothing but read pictures: it gets
/// only the time that is left over, writes no file and no core, cannot be traced, asks for no new
/// privileges, takes a bounded amount of memory, is the first to go when memory runs out, and ends
/// with the thread that started it.
void becomeUnnoticed();

/// Processor time that this process has used.
[[nodiscard]] double processorSeconds();

}  // namespace vantorel
