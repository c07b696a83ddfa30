" Vim syntax file of bk documents.

if exists("b:current_syntax")
  finish
endif
let s:cpo_save = &cpo
set cpo&vim

syn case match

" Later rules go before earlier ones.
syn match bkdUnknown     +[^[:space:]{}(),:="/]\+\|/+
syn match bkdColon       ":"
syn match bkdName        "\<[A-Za-z_][A-Za-z0-9_.]*"
syn match bkdFunction    "\<[A-Za-z_][A-Za-z0-9_.]*("me=e-1
syn match bkdTemplate    "<[A-Za-z_][A-Za-z0-9_.]*>"
syn match bkdArray       +\[[^][:space:]]*\]+
syn match bkdOperator    "[=,]"
syn match bkdBrace       "[{}()]"
syn match bkdInt         +[+-]\=\<[0-9][^[:space:]{}(),:="/#]*+
syn match bkdInt         +[+-][0-9][^[:space:]{}(),:="/#]*+
syn match bkdDouble      +[+-]\=\(\.\=[0-9]\)\@=\([^[:space:]{}(),:="/#]*[.e]\)\@=[^[:space:]{}(),:="/#]\++
syn match bkdDouble      +[+-]\(inf\|nan\)[^[:space:]{}(),:="/#]*+
syn match bkdBinary      +\<0x[^[:space:]{}(),:="/#]*+
syn match bkdBool        +\(^\|[[:space:]{}(),:=]\)\@1<=\(yes\|no\)\($\|[[:space:]{}(),:="]\)\@=+
syn match bkdKeyword     "#[A-Za-z_][A-Za-z0-9_]*"
syn match bkdEmpty       "<empty>"
syn match bkdString      +"\([^"]\|\\\@1<="\)*\\\@1<!"+ contains=bkdEscape
syn match bkdEscape      "\\." contained
syn match bkdStringOpen  +"\([^"]\|\\\@1<="\)*$+
syn match bkdComment     "//.*$" contains=@Spell,bkdTodo
syn keyword bkdTodo      TODO FIXME XXX contained
syn match bkdInclude     +#include "[^"]*"+ contains=bkdIncluded
syn match bkdIncluded    +"[^"]*"+ contained
syn match bkdVersion     "#Brellwick_Serial_Version .*$"

syn sync minlines=1

hi def link bkdUnknown    Error
hi def link bkdColon      Error
hi def link bkdStringOpen Error
hi def link bkdName       Identifier
hi def link bkdFunction   Function
hi def link bkdTemplate   Type
hi def link bkdArray      Type
hi def link bkdOperator   Operator
hi def link bkdBrace      Delimiter
hi def link bkdInt        Number
hi def link bkdDouble     Float
hi def link bkdBinary     Special
hi def link bkdBool       Boolean
hi def link bkdKeyword    Keyword
hi def link bkdEmpty      Constant
hi def link bkdString     String
hi def link bkdEscape     SpecialChar
hi def link bkdComment    Comment
hi def link bkdTodo       Todo
hi def link bkdInclude    Include
hi def link bkdIncluded   String
hi def link bkdVersion    PreProc

let b:current_syntax = "bkd"
let &cpo = s:cpo_save
unlet s:cpo_save
