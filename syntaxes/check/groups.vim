" Writes each word of the current file that has one syntax group, with the group: vim -es -S groups.vim FILE
set encoding=utf-8
let s:lines = []
for s:line in range(1, line('$'))
  let s:word = ''
  let s:group = ''
  for s:column in range(1, col([s:line, '$']))
    let s:here = synIDattr(synID(s:line, s:column, 1), 'name')
    let s:character = strpart(getline(s:line), s:column - 1, 1)
    if s:here !=# s:group || s:column == col([s:line, '$'])
      if s:word =~# '\S'
        call add(s:lines, s:word . "\t" . s:group)
      endif
      let s:word = ''
      let s:group = s:here
    endif
    let s:word .= s:character
  endfor
endfor
call writefile(s:lines, $GROUPS_FILE)
qall!
