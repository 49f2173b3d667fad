// Edge: the guard for g++ on x64. One frame in assembly carries an exception handler; the handler unwinds the
// stack to a label behind the guarded call and hands over the exception's code in the return register.
#include "foundation/seh_guard.h"

#include "foundation/windows_api.h"

#if !defined(__x86_64__)
#error "The guard's frame is written for x64."
#endif

extern "C" {

uint32_t TarnwickGuardFrame(void (*function)(void*), void* context);
void TarnwickGuardLanding();

EXCEPTION_DISPOSITION TarnwickGuardHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                           DISPATCHER_CONTEXT* dispatcher) {
  constexpr DWORD kUnwinding = 0x2 | 0x4;  // EXCEPTION_UNWINDING, EXCEPTION_EXIT_UNWIND
  if ((record->ExceptionFlags & kUnwinding) != 0) return ExceptionContinueSearch;
  const ULONG_PTR code = record->ExceptionCode;
  RtlUnwindEx(frame, reinterpret_cast<void*>(&TarnwickGuardLanding), record, reinterpret_cast<void*>(code),
              context, dispatcher->HistoryTable);
  return ExceptionContinueSearch;  // not reached: the unwind goes to the landing label
}

}  // extern "C"

// 40 bytes: the callee's home space and the alignment of the stack. RtlUnwindEx restores the stack pointer
// and the preserved registers of this frame, and puts the code into eax.
asm(R"(
  .text
  .p2align 4
  .globl TarnwickGuardFrame
  .def TarnwickGuardFrame; .scl 2; .type 32; .endef
  .seh_proc TarnwickGuardFrame
TarnwickGuardFrame:
  subq $40, %rsp
  .seh_stackalloc 40
  .seh_endprologue
  .seh_handler TarnwickGuardHandler, @except
  movq %rcx, %rax
  movq %rdx, %rcx
  call *%rax
  xorl %eax, %eax
  .globl TarnwickGuardLanding
TarnwickGuardLanding:
  nop
  addq $40, %rsp
  ret
  .seh_endproc
)");

namespace tarnwick {

uint32_t CallGuarded(void (*function)(void*), void* context) { return TarnwickGuardFrame(function, context); }

}  // namespace tarnwick
