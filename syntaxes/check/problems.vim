" Checks sample.bkd with the settings of the page, and writes what Vim found: vim -es -S problems.vim, with SETTINGS_FILE
set encoding=utf-8
edit sample.bkd
source $SETTINGS_FILE
silent make!
let s:lines = []
for s:problem in getqflist()
  call add(s:lines, (s:problem.valid ? s:problem.type : '-') . ' ' . bufname(s:problem.bufnr) . ' ' . s:problem.text)
endfor
for s:number in range(1, len(getqflist()))
  if getqflist()[s:number - 1].lnum > 0
    execute 'silent cc ' . s:number
    call add(s:lines, line('.') . ' ' . strpart(getline('.'), col('.') - 1))
  endif
endfor
call writefile(s:lines, $FOUND_FILE)
qall!
