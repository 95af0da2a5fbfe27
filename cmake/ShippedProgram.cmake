# Builds the program as it is shipped: hardened, and linked statically, because loading the shared
# libraries takes longer than the whole request.

if(DNZCNF_SANITIZE AND DNZCNF_STATIC)
  message(FATAL_ERROR "The sanitizers need shared libraries: DNZCNF_SANITIZE excludes DNZCNF_STATIC.")
endif()

# For all targets: the library of the services consists of the same objects.
if(DNZCNF_STATIC)
  add_compile_options(-fPIE -fstack-protector-strong -D_FORTIFY_SOURCE=3
                      -ffunction-sections -fdata-sections)
endif()

# A static program contains only those locale categories that its objects refer to, and setlocale gives
# wrong answers for the others. These names link all of them.
set(locale_categories CTYPE NUMERIC TIME COLLATE MONETARY MESSAGES PAPER NAME ADDRESS TELEPHONE
  MEASUREMENT IDENTIFICATION)
list(TRANSFORM locale_categories REPLACE "(.+)" "LINKER:-u,_nl_current_LC_\\1_used")

function(link_as_shipped program)
  if(DNZCNF_STATIC)
    target_link_options(${program} PRIVATE -static-pie LINKER:-z,relro,-z,now,-z,noexecstack
      LINKER:--gc-sections ${locale_categories})
  endif()
endfunction()
