# Warnings for project targets only (third-party headers come in as system includes).
function(orvane_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(ORVANE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
