# Installs the Node packages of the lock file into FOLDER, unless that is done already.
#
#   cmake -D FOLDER=<folder of package-lock.json> -P InstallPackages.cmake

cmake_minimum_required(VERSION 3.25)

# Test runs of several build folders share the packages; the second of two at once waits.
file(LOCK ${FOLDER} DIRECTORY GUARD PROCESS TIMEOUT 300)

# npm writes this file last, so an installation that was cut short is repeated.
set(installed ${FOLDER}/node_modules/.package-lock.json)
if(EXISTS ${installed} AND NOT ${FOLDER}/package-lock.json IS_NEWER_THAN ${installed})
  return()
endif()

execute_process(
  COMMAND npm ci --no-fund --no-audit --loglevel=error
  WORKING_DIRECTORY ${FOLDER}
  COMMAND_ERROR_IS_FATAL ANY)
