file(REMOVE_RECURSE ${TO})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${FROM} --prefix ${TO} COMMAND_ERROR_IS_FATAL ANY)
